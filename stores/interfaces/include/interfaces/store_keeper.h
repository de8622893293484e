/* Chooses the store that the stand-ins of the product's components work on. For C and C++.
 *
 * A host that never asks works on the user's own store, which is made with sample data when it is missing. */
#ifndef STYLE_NODE_STORE_KEEPER_H
#define STYLE_NODE_STORE_KEEPER_H

#include "automation/interface.h"

#define STORE_KEEPER_PROGRAM_IDENTITY u"KOR_Stand_Ins.Store"
#define STORE_KEEPER_CLASS_IDENTITY                                                                          \
    {                                                                                                        \
        0x5B0C9E47, 0x13D2, 0x4C68, {                                                                        \
            0xA7, 0x40, 0x2E, 0x96, 0xF8, 0x0B, 0x71, 0xD4                                                   \
        }                                                                                                    \
    }
#define STORE_KEEPER_SAMPLE_NODES (-1)
#define STORE_KEEPER_MOST_NODES 32766

#ifdef __cplusplus
namespace interfaces {
constexpr automation::Long Sample_Nodes = STORE_KEEPER_SAMPLE_NODES;
constexpr automation::Long Most_Nodes = STORE_KEEPER_MOST_NODES;
#endif

#define AUTOMATION_SELF Store_Keeper
AUTOMATION_BEGIN(Store_Keeper, Automation_Unknown, 0x6B91D0C4, 0x27FE, 0x4A83,
                 {0x8D, 0x05, 0xE2, 0x79, 0x3C, 0x16, 0xBA, 0x4F})
#ifdef __cplusplus
static constexpr automation::String_View Program_Identity = STORE_KEEPER_PROGRAM_IDENTITY;
static constexpr automation::Identity Class_Identity = STORE_KEEPER_CLASS_IDENTITY;
#endif
/* Opens "sqlite:PATH" or "postgresql://..."; Empty is the user's own store. Components that are created from
 * then on, in the whole process, work on it. A failure's description says what to do. */
AUTOMATION_MEMBER(Open, Automation_In Location)
/* Makes a store with the sample data, or with the default node and Nodes others (0 to
 * STORE_KEEPER_MOST_NODES), and answers its location as Describe does. What is there already is left alone,
 * which is a failure. */
AUTOMATION_MEMBER(Create, Automation_In Location, int32_t Nodes, Automation_Text_Out Result)
/* Lets the store go once the components on it are gone. Until then a chosen store keeps its module loaded.
 * Closed: whether there was one. */
AUTOMATION_MEMBER(Close, Automation_Boolean_Reference Closed)
/* The location as it may be shown, and given to a program again: without a password. Asks no server and no
 * file. */
AUTOMATION_MEMBER(Describe, Automation_In Location, Automation_Text_Out Result)
AUTOMATION_END(Store_Keeper)
#undef AUTOMATION_SELF

#ifdef __cplusplus
} // namespace interfaces
#endif

#endif
