/* The product's components as far as the editor uses them: seven data components, the message box and the
 * label checker. For C and C++; in C the names begin with Product_.
 *
 * Every member answers an automation status; a failing one leaves source, number and description in the
 * thread's error object. Every argument of a data component is a variant that holds a text: identifiers as
 * decimal text, dialog values as the controls hold them. Readers answer with a text variant, the XML of a
 * persisted recordset. Calls are synchronous and come on the thread that created the component.
 *
 * The members stand in the order of the product's interfaces; those that the editor never calls are left
 * out. */
#ifndef STYLE_NODE_PRODUCT_COMPONENTS_H
#define STYLE_NODE_PRODUCT_COMPONENTS_H

#include "automation/interface.h"

#define PRODUCT_LABEL_CHECKER_CLASS                                                                          \
    {                                                                                                        \
        0x2330FCF1, 0x562A, 0x44B8, {                                                                        \
            0x88, 0x66, 0x8D, 0x77, 0xE8, 0x27, 0x06, 0x2C                                                   \
        }                                                                                                    \
    }

#ifdef __cplusplus
#define PRODUCT(Name) Name
#define PRODUCT_PROGRAM(Name, Text) static constexpr automation::String_View Program_Identity = Text;
namespace interfaces {
#else
#define PRODUCT(Name) Product_##Name
#define PRODUCT_PROGRAM(Name, Text)
#endif

/* Reads the product's lookup lists. */
#define AUTOMATION_SELF PRODUCT(SR)
AUTOMATION_BEGIN(PRODUCT(SR), Automation_Unknown, 0x3CEAAF30, 0x8142, 0x48EA,
                 {0x91, 0xD9, 0x30, 0x80, 0xF9, 0xB4, 0x39, 0xFC})
PRODUCT_PROGRAM(SR, u"ZEBdb.SR")
AUTOMATION_MEMBER(Get_All_Node_Types, Automation_Out Result)
AUTOMATION_MEMBER(Get_All_Threshold_Types, Automation_Out Result)
AUTOMATION_END(PRODUCT(SR))
#undef AUTOMATION_SELF

/* Reads node records and their detail records. */
#define AUTOMATION_SELF PRODUCT(NODES)
AUTOMATION_BEGIN(PRODUCT(NODES), Automation_Unknown, 0x9DFB369B, 0xAB13, 0x4FAE,
                 {0xA2, 0x76, 0x55, 0xDA, 0xA0, 0x5F, 0x11, 0x19})
PRODUCT_PROGRAM(NODES, u"ZEBdb.NODES")
AUTOMATION_MEMBER(Get_Full_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_Out Result)
AUTOMATION_MEMBER(Get_Partial_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_Out Result)
AUTOMATION_MEMBER(Get_Enhanced_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_Out Result)
AUTOMATION_MEMBER(Get_DialContinue_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_Out Result)
AUTOMATION_MEMBER(Get_Style_Nodes, Automation_In Config_ID, Automation_In Partition_ID, Automation_Out Result)
AUTOMATION_END(PRODUCT(NODES))
#undef AUTOMATION_SELF

/* Created and released with the others, never called. */
#define AUTOMATION_SELF PRODUCT(DETAIL)
AUTOMATION_BEGIN(PRODUCT(DETAIL), Automation_Unknown, 0x6301BBFC, 0xA0C5, 0x454E,
                 {0x8F, 0xF9, 0xBB, 0x51, 0x09, 0x44, 0xFE, 0x0C})
PRODUCT_PROGRAM(DETAIL, u"ZEBdb.DETAIL")
AUTOMATION_END(PRODUCT(DETAIL))
#undef AUTOMATION_SELF

/* Reads the configuration record. */
#define AUTOMATION_SELF PRODUCT(CONFIG)
AUTOMATION_BEGIN(PRODUCT(CONFIG), Automation_Unknown, 0x6FCED11D, 0x2BD8, 0x41E6,
                 {0x84, 0x7A, 0x83, 0x87, 0xCD, 0xDE, 0x8D, 0x51})
PRODUCT_PROGRAM(CONFIG, u"ZEBdb.CONFIG")
AUTOMATION_MEMBER(Get_Configuration_Info, Automation_Out Result)
AUTOMATION_END(PRODUCT(CONFIG))
#undef AUTOMATION_SELF

/* Updates a node record and the node's entry in the general node list. */
#define AUTOMATION_SELF PRODUCT(UDNODES)
AUTOMATION_BEGIN(PRODUCT(UDNODES), Automation_Unknown, 0x3A124C64, 0x7E02, 0x4F05,
                 {0xB7, 0xC1, 0xDC, 0xE2, 0x7F, 0x76, 0x95, 0xF5})
PRODUCT_PROGRAM(UDNODES, u"ZEBud.UDNODES")
AUTOMATION_MEMBER(Update_Style_Node, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_In Hookflash, Automation_In Threshold_Type_ID,
                  Automation_In Transfer, Automation_In Disconnection, Automation_In Supervise_Caption,
                  Automation_In Supervise_ID, Automation_In Label)
AUTOMATION_MEMBER(Update_Node_Entry, Automation_In Label, Automation_In Changed, Automation_In Config_ID,
                  Automation_In Partition_ID, Automation_In Node_Type_ID, Automation_In Node_Number)
AUTOMATION_END(PRODUCT(UDNODES))
#undef AUTOMATION_SELF

/* Deletes a node's detail record of one supervised type. */
#define AUTOMATION_SELF PRODUCT(DELNODES)
AUTOMATION_BEGIN(PRODUCT(DELNODES), Automation_Unknown, 0x66080F17, 0x4C96, 0x48E2,
                 {0x9C, 0xBD, 0x0B, 0xA3, 0xA1, 0xA6, 0xBC, 0xDE})
PRODUCT_PROGRAM(DELNODES, u"ZEBdel.DELNODES")
AUTOMATION_MEMBER(Delete_Full_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number)
AUTOMATION_MEMBER(Delete_Partial_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number)
AUTOMATION_MEMBER(Delete_Enhanced_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number)
AUTOMATION_MEMBER(Delete_DialContinue_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number)
AUTOMATION_END(PRODUCT(DELNODES))
#undef AUTOMATION_SELF

/* Inserts a node's detail record of one supervised type. */
#define AUTOMATION_SELF PRODUCT(INSNODES)
AUTOMATION_BEGIN(PRODUCT(INSNODES), Automation_Unknown, 0xB120A366, 0xF0BB, 0x49CF,
                 {0x82, 0xF2, 0xDC, 0x05, 0x87, 0x3F, 0x9B, 0xD0})
PRODUCT_PROGRAM(INSNODES, u"ZEBins.INSNODES")
AUTOMATION_MEMBER(Insert_DialContinue_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_In Supervise_ID, Automation_In Retrieve,
                  Automation_In Busy_Retry, Automation_In Number_Retries, Automation_In Ring_Limit,
                  Automation_In Busy_On, Automation_In Busy_Off, Automation_In Ring_On,
                  Automation_In Ring_Off)
AUTOMATION_MEMBER(Insert_Enhanced_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_In Supervise_ID, Automation_In Retrieve,
                  Automation_In Busy_Retry, Automation_In Number_Retries, Automation_In Ring_Limit,
                  Automation_In Busy_On, Automation_In Busy_Off, Automation_In Ring_On,
                  Automation_In Ring_Off)
AUTOMATION_MEMBER(Insert_Full_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_In Supervise_ID, Automation_In Retrieve,
                  Automation_In Busy_Retry, Automation_In Number_Retries, Automation_In Ring_Limit,
                  Automation_In Busy_On, Automation_In Busy_Off, Automation_In Ring_On,
                  Automation_In Ring_Off)
AUTOMATION_MEMBER(Insert_Partial_Detail, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_In Supervise_ID, Automation_In Retrieve,
                  Automation_In Busy_Retry, Automation_In Number_Retries, Automation_In Ring_Limit,
                  Automation_In Busy_On, Automation_In Busy_Off, Automation_In Ring_On,
                  Automation_In Ring_Off)
AUTOMATION_END(PRODUCT(INSNODES))
#undef AUTOMATION_SELF

/* The product's message box. Kind: 1 confirmation question, 2 information, 3 error. Buttons: 1 a single
 * acknowledging button, 3 the three answers of the save question. The answer is -1 when the box could not be
 * shown; the three properties then say why. */
#define AUTOMATION_SELF PRODUCT(Message_Box)
AUTOMATION_BEGIN(PRODUCT(Message_Box), Automation_Unknown, 0x78B7D0AC, 0x8477, 0x4CE0,
                 {0x8E, 0x4C, 0xDA, 0x11, 0xB4, 0x3C, 0x58, 0x9B})
PRODUCT_PROGRAM(Message_Box, u"KOR_MsgBox.Busyness_Rules")
AUTOMATION_MEMBER(Box_Error_Location, Automation_Text_Out Result)
AUTOMATION_MEMBER(Box_Error_Code, Automation_Long_Out Result)
AUTOMATION_MEMBER(Box_Error_Description, Automation_Text_Out Result)
AUTOMATION_MEMBER(Show_Box, Automation_In Language, Automation_In Text, Automation_In Kind,
                  Automation_In Buttons, Automation_In Title, Automation_Long_Out Answer)
AUTOMATION_END(PRODUCT(Message_Box))
#undef AUTOMATION_SELF

/* The product's rule for labels. The editor creates it by class identity, once for each save. */
#define AUTOMATION_SELF PRODUCT(Label_Checker)
AUTOMATION_BEGIN(PRODUCT(Label_Checker), Automation_Unknown, 0xC1ACC990, 0x6424, 0x450A,
                 {0xA3, 0x6B, 0xF9, 0xB3, 0xDD, 0xCB, 0x36, 0x9D})
PRODUCT_PROGRAM(Label_Checker, u"LabelChecker")
#ifdef __cplusplus
static constexpr automation::Identity Class_Identity = PRODUCT_LABEL_CHECKER_CLASS;
#endif
AUTOMATION_MEMBER(Is_Label_Allowed, Automation_In Label, Automation_Boolean_Reference Allowed)
AUTOMATION_MEMBER(Prepare_Label, Automation_In Label, Automation_Out Result)
AUTOMATION_END(PRODUCT(Label_Checker))
#undef AUTOMATION_SELF

#ifdef __cplusplus
} // namespace interfaces
#endif

#endif
