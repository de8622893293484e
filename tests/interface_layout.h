/* What the C half of the interface tests offers the C++ half. */
#pragma once

#include "interfaces/product_components.h"
#include "interfaces/store_history.h"
#include "interfaces/store_keeper.h"
#include "interfaces/store_records.h"
#include "style_node/busyness_rules.h"

struct Named_Identity {
    const char* Text;
    const Automation_Identity* Identity;
};
/* In the order of the headers; ends with nulls. */
AUTOMATION_C const struct Named_Identity Identities_In_C[];

struct Editor_In_C {
    Automation_Boolean Shown, Blind, Default_Node;
    int32_t Code;
    char Description[100];
};
/* Calls every member; the job fails for its language. */
AUTOMATION_C Automation_Status Use_Editor_In_C(void* editor, struct Editor_In_C* seen);

/* A Label_Checker with a count of one more. */
AUTOMATION_C void* Checker_In_C(void);
