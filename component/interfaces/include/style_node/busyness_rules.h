/* The public interface of the style-node editor: the one class that a host sees. For C and C++.
 *
 * Create it by its programmatic identifier, call Shown, read the error properties when it answers False.
 * Apartment-threaded: every call on an object comes on the thread that created it, and Shown blocks that
 * thread while the dialog is up; a call from another thread answers AUTOMATION_WRONG_THREAD and does nothing.
 * No failure of the editor is raised to the host. A dual interface: its members can also be called by name.
 */
#ifndef STYLE_NODE_BUSYNESS_RULES_H
#define STYLE_NODE_BUSYNESS_RULES_H

#include "automation/interface.h"

#define STYLE_NODE_PROGRAM_IDENTITY u"KOR_STYLE_Node.Busyness_Rules"
#define STYLE_NODE_CLASS_IDENTITY                                                                            \
    {                                                                                                        \
        0x9AD9B9A2, 0x5E78, 0x454D, {                                                                        \
            0xB0, 0x65, 0xA1, 0xC2, 0x84, 0xCC, 0x45, 0x49                                                   \
        }                                                                                                    \
    }

#ifdef __cplusplus
namespace style_node {
#endif

/* The name is the published one of the dual interface; the members stand in its order. */
#define AUTOMATION_SELF _Busyness_Rules
AUTOMATION_BEGIN(_Busyness_Rules, Automation_Dispatch, 0x99356597, 0x6FBA, 0x4662,
                 {0xB6, 0xA7, 0x30, 0xB7, 0xB1, 0x2E, 0x9E, 0xED})
#ifdef __cplusplus
using Base_Interface = Automation_Dispatch;
static constexpr automation::String_View Program_Identity = STYLE_NODE_PROGRAM_IDENTITY;
static constexpr automation::Identity Class_Identity = STYLE_NODE_CLASS_IDENTITY;
#endif
/* The last recorded error: "[source][object]procedure", its number, its text. An empty description means
 * that no error has been recorded since Shown began. */
AUTOMATION_MEMBER(Get_ErrLocation, Automation_Text_Out Result)
AUTOMATION_MEMBER(Get_ErrCode, Automation_Long_Out Result)
AUTOMATION_MEMBER(Get_ErrDescription, Automation_Text_Out Result)
/* Whether the node last shown is of supervised type Blind. */
AUTOMATION_MEMBER(Get_SupervisedType_Blind, Automation_Boolean_Reference Result)
AUTOMATION_MEMBER(Put_SupervisedType_Blind, Automation_Boolean_Reference Given_Is_SupervisedType_Blind)
/* Whether Shown was called for node 0, the partition's default node. */
AUTOMATION_MEMBER(Get_Editing_Default_Node, Automation_Boolean_Reference Result)
/* Runs one editing job; Result is True when no error was recorded during it. Language_ID 1 is English;
 * Silent_Error suppresses the "Internal Error" box. A host that leaves the last two out passes 1, False.
 * When it is False because a component of the product's could not be created, the thread's error object has
 * the last recorded error with the Reason, for instance which class is not registered. */
AUTOMATION_MEMBER(Shown, int16_t Config_ID, int16_t Partition_ID, int16_t Node_Number, int16_t Language_ID,
                  Automation_Boolean Silent_Error, Automation_Boolean_Reference Result)
AUTOMATION_END(_Busyness_Rules)
#undef AUTOMATION_SELF

#ifdef __cplusplus
using automation::Boolean;
using automation::False;
using automation::Integer;
using automation::Long;
using automation::Status;
using automation::True;

} // namespace style_node
#endif

#endif
