/* The interfaces as C sees them: their layout, which must never change, and C on both sides of a call. */
#include "interface_layout.h"

#include <stddef.h>

/* ---- Members and their order: each interface from its first own member to its end ---- */

#define PIN(Interface, Position, Member)                                                                     \
    _Static_assert(offsetof(struct Interface##_Members, Member) == (Position) * sizeof(void*),               \
                   #Interface "." #Member " has moved");
#define ENDS(Interface, Count)                                                                               \
    PIN(Interface, 0, Query_Interface)                                                                       \
    PIN(Interface, 1, Add_Reference)                                                                         \
    PIN(Interface, 2, Release)                                                                               \
    _Static_assert(sizeof(struct Interface##_Members) == (Count) * sizeof(void*), #Interface " has grown");  \
    _Static_assert(sizeof(Interface) == sizeof(void*), #Interface " is more than its members");
#define PIN_1(I, P, A) PIN(I, P, A)
#define PIN_2(I, P, A, B) PIN_1(I, P, A) PIN(I, P + 1, B)
#define PIN_4(I, P, A, B, C, D) PIN_2(I, P, A, B) PIN_2(I, P + 2, C, D)

/* clang-format off */
ENDS(Automation_Unknown, 3)
PIN_2(Automation_Dispatch, 3, Get_Member_Identities, Invoke) ENDS(Automation_Dispatch, 5)
PIN_2(Automation_Class_Object, 3, Create_Instance, Lock) ENDS(Automation_Class_Object, 5)
PIN_2(_Busyness_Rules, 3, Get_Member_Identities, Invoke)
PIN_4(_Busyness_Rules, 5, Get_ErrLocation, Get_ErrCode, Get_ErrDescription, Get_SupervisedType_Blind)
PIN_2(_Busyness_Rules, 9, Put_SupervisedType_Blind, Get_Editing_Default_Node)
PIN_1(_Busyness_Rules, 11, Shown) ENDS(_Busyness_Rules, 12)
PIN_2(Store_Keeper, 3, Open, Create) PIN_2(Store_Keeper, 5, Close, Describe) ENDS(Store_Keeper, 7)
PIN_2(Store_History, 3, Upgrade, Read_Changes) PIN_1(Store_History, 5, Revert) ENDS(Store_History, 6)
PIN_2(Store_Records, 3, Begin, End) PIN_4(Store_Records, 5, Read, Describe_Change, Set, Write)
PIN_2(Store_Records, 9, Add, Remove) ENDS(Store_Records, 11)
PIN_2(Product_SR, 3, Get_All_Node_Types, Get_All_Threshold_Types) ENDS(Product_SR, 5)
PIN_2(Product_NODES, 3, Get_Full_Detail, Get_Partial_Detail)
PIN_2(Product_NODES, 5, Get_Enhanced_Detail, Get_DialContinue_Detail)
PIN_1(Product_NODES, 7, Get_Style_Nodes) ENDS(Product_NODES, 8)
ENDS(Product_DETAIL, 3)
PIN_1(Product_CONFIG, 3, Get_Configuration_Info) ENDS(Product_CONFIG, 4)
PIN_2(Product_UDNODES, 3, Update_Style_Node, Update_Node_Entry) ENDS(Product_UDNODES, 5)
PIN_2(Product_DELNODES, 3, Delete_Full_Detail, Delete_Partial_Detail)
PIN_2(Product_DELNODES, 5, Delete_Enhanced_Detail, Delete_DialContinue_Detail) ENDS(Product_DELNODES, 7)
PIN_2(Product_INSNODES, 3, Insert_DialContinue_Detail, Insert_Enhanced_Detail)
PIN_2(Product_INSNODES, 5, Insert_Full_Detail, Insert_Partial_Detail) ENDS(Product_INSNODES, 7)
PIN_4(Product_Message_Box, 3, Box_Error_Location, Box_Error_Code, Box_Error_Description, Show_Box)
ENDS(Product_Message_Box, 7)
PIN_2(Product_Label_Checker, 3, Is_Label_Allowed, Prepare_Label) ENDS(Product_Label_Checker, 5)

/* ---- Records ---- */

#define AT(Record, Member, Offset) \
    _Static_assert(offsetof(Record, Member) == (Offset), #Record "." #Member " has moved");
#define SIZE(Record, Bytes) _Static_assert(sizeof(Record) == (Bytes), #Record " has another size");
AT(Automation_Identity, B, 4) AT(Automation_Identity, C, 6) AT(Automation_Identity, D, 8) SIZE(Automation_Identity, 16)
AT(Automation_Variant, Type, 0) AT(Automation_Variant, As_Integer, 8) AT(Automation_Variant, As_Long, 8)
AT(Automation_Variant, As_Long_Long, 8) AT(Automation_Variant, As_Double, 8) AT(Automation_Variant, As_Block, 8)
AT(Automation_Variant, As_Object, 8) AT(Automation_Variant, As_Reference, 8) SIZE(Automation_Variant, 16)
AT(Automation_Error, Source, 0) AT(Automation_Error, Description, 8) AT(Automation_Error, Reason, 16)
AT(Automation_Error, Number, 24) SIZE(Automation_Error, 32)
AT(Automation_Registration, Program_Identity, 0) AT(Automation_Registration, Class_Identity, 8)
AT(Automation_Registration, Threading_Model, 24) AT(Automation_Registration, Address, 32)
SIZE(Automation_Registration, 40) SIZE(Automation_Block, 4) SIZE(Automation_Boolean, 2) SIZE(Automation_Status, 4)
AT(Automation_Name, Units, 0) AT(Automation_Name, Length, 8) SIZE(Automation_Name, 16)
AT(Automation_Arguments, Values, 0) AT(Automation_Arguments, Named, 8) AT(Automation_Arguments, Count, 16)
AT(Automation_Arguments, Named_Count, 20) SIZE(Automation_Arguments, 24)

const struct Named_Identity Identities_In_C[] = {
    {"{00000000-0000-0000-C000-000000000046}", &Automation_Unknown_Identity},
    {"{4F2B7A90-2C1D-4E0A-9B63-581ED740A215}", &Automation_Dispatch_Identity},
    {"{1D8E53C7-6A0F-4B92-803A-F527C69E1101}", &Automation_Class_Object_Identity},
    {"{99356597-6FBA-4662-B6A7-30B7B12E9EED}", &_Busyness_Rules_Identity},
    {"{6B91D0C4-27FE-4A83-8D05-E2793C16BA4F}", &Store_Keeper_Identity},
    {"{1FD84B63-A27E-4395-B60C-48F1957D2AE3}", &Store_History_Identity},
    {"{A41C7F02-35D9-4E6A-9B18-60D32F8AC457}", &Store_Records_Identity},
    {"{3CEAAF30-8142-48EA-91D9-3080F9B439FC}", &Product_SR_Identity},
    {"{9DFB369B-AB13-4FAE-A276-55DAA05F1119}", &Product_NODES_Identity},
    {"{6301BBFC-A0C5-454E-8FF9-BB510944FE0C}", &Product_DETAIL_Identity},
    {"{6FCED11D-2BD8-41E6-847A-8387CDDE8D51}", &Product_CONFIG_Identity},
    {"{3A124C64-7E02-4F05-B7C1-DCE27F7695F5}", &Product_UDNODES_Identity},
    {"{66080F17-4C96-48E2-9CBD-0BA3A1A6BCDE}", &Product_DELNODES_Identity},
    {"{B120A366-F0BB-49CF-82F2-DC05873F9BD0}", &Product_INSNODES_Identity},
    {"{78B7D0AC-8477-4CE0-8E4C-DA11B43C589B}", &Product_Message_Box_Identity},
    {"{C1ACC990-6424-450A-A36B-F9B3DDCB369D}", &Product_Label_Checker_Identity},
    {0, 0}};
/* clang-format on */

/* ---- C calls an object in C++ ---- */

Automation_Status Use_Editor_In_C(void* object, struct Editor_In_C* seen) {
    _Busyness_Rules* const editor = object;
    Automation_Block* text = 0;
    Automation_Boolean blind = AUTOMATION_TRUE;
    editor->Members->Add_Reference(editor);
    Automation_Status status = editor->Members->Shown(editor, 1, 1, 0, 557, AUTOMATION_FALSE, &seen->Shown);
    if (status >= 0)
        status = editor->Members->Get_ErrCode(editor, &seen->Code);
    if (status >= 0)
        status = editor->Members->Get_ErrDescription(editor, &text);
    Automation_To_UTF8(text, seen->Description, sizeof seen->Description);
    Automation_Free(text);
    if (status >= 0)
        status = editor->Members->Put_SupervisedType_Blind(editor, &blind);
    if (status >= 0)
        status = editor->Members->Get_SupervisedType_Blind(editor, &seen->Blind);
    if (status >= 0)
        status = editor->Members->Get_Editing_Default_Node(editor, &seen->Default_Node);
    editor->Members->Release(editor);
    return status;
}

/* ---- C++ calls an object in C: a checker that allows labels of three units ---- */

static uint32_t count = 0;
static Automation_Status Query(Product_Label_Checker* self, const Automation_Identity* wanted,
                               void** object) {
    const int known = wanted->A == Product_Label_Checker_Identity.A || wanted->A == 0;
    *object = known ? self : 0;
    count += known ? 1 : 0;
    return known ? AUTOMATION_OK : AUTOMATION_NO_INTERFACE;
}
static uint32_t Add(Product_Label_Checker* self) {
    (void)self;
    return ++count;
}
static uint32_t Drop(Product_Label_Checker* self) {
    (void)self;
    return --count;
}
static Automation_Status Allowed(Product_Label_Checker* self, const Automation_Variant* label,
                                 Automation_Boolean* allowed) {
    (void)self;
    if (label->Type != Automation_Text)
        return AUTOMATION_RUN_TIME(13);
    *allowed = label->As_Block && label->As_Block->Length == 3 ? AUTOMATION_TRUE : AUTOMATION_FALSE;
    return AUTOMATION_OK;
}
static Automation_Status Prepare(Product_Label_Checker* self, const Automation_Variant* label,
                                 Automation_Variant* result) {
    (void)self;
    return Automation_Copy(result, label);
}
void* Checker_In_C(void) {
    static const struct Product_Label_Checker_Members members = {Query, Add, Drop, Allowed, Prepare};
    static Product_Label_Checker checker = {&members};
    ++count;
    return &checker;
}
