/* Every record of a partition's STYLE nodes as the store holds it, and changes to many of them as one
 * transaction. For C and C++.
 *
 * Where the product's components take and give what the dialog shows, this takes and gives what is stored:
 * nulls and odd values included. Values are text variants or null variants. An object belongs to the thread
 * that created it; while its work is under way, other threads and the components of other threads wait. */
#ifndef STYLE_NODE_STORE_RECORDS_H
#define STYLE_NODE_STORE_RECORDS_H

#include "automation/interface.h"

#define STORE_RECORDS_PROGRAM_IDENTITY u"KOR_Stand_Ins.Records"

/* What a record describes: the node itself, or its detail as supervised type 1 to 4. */
#define STORE_RECORDS_NODE 0
#define STORE_RECORDS_LAST_DETAIL 4

#ifdef __cplusplus
namespace interfaces {
constexpr automation::Long Node_Record = STORE_RECORDS_NODE;
constexpr automation::Long Last_Detail_Record = STORE_RECORDS_LAST_DETAIL;
#endif

#define AUTOMATION_SELF Store_Records
AUTOMATION_BEGIN(Store_Records, Automation_Unknown, 0xA41C7F02, 0x35D9, 0x4E6A,
                 {0x9B, 0x18, 0x60, 0xD3, 0x2F, 0x8A, 0xC4, 0x57})
#ifdef __cplusplus
static constexpr automation::String_View Program_Identity = STORE_RECORDS_PROGRAM_IDENTITY;
#endif
/* From here to End, everything that this thread does to the store is one transaction on one state of it; if
 * it Writes, nobody else writes that partition meanwhile. A failure leaves it open, to be ended without Kept.
 * Work inside work on one thread fails. */
AUTOMATION_MEMBER(Begin, Automation_In Config_ID, Automation_In Partition_ID, Automation_Boolean Writes)
/* Kept: the changes count from now on; else nothing has happened. The last reference's end is an End without
 * it. Change: the number under which the history has all of it and Revert takes it back; empty when nothing
 * was changed. */
AUTOMATION_MEMBER(End, Automation_Boolean Kept, Automation_Text_Out Change)
/* The records of one kind as a persisted recordset, by node: NodeNumber, then the values, then Escaped; for
 * STORE_RECORDS_NODE also Change, the number of the change at which any of the node's records was last
 * written, null if that was never. Escaped: null, or the names of those values of the row, with blanks
 * between them, that hold what no document can carry. They are given in another form: "\\" is a backslash,
 * "\uXXXX" the code unit with these four hexadecimal digits, "\xXX" a byte that belongs to no character. Such
 * a value cannot be put aside again. */
AUTOMATION_MEMBER(Read, int32_t Kind, Automation_Out Result)
/* Who made a change and when, for a message: "bob@desk at 2026-11-23 17:05:09 (UTC)". */
AUTOMATION_MEMBER(Describe_Change, Automation_In Change, Automation_Text_Out Result)
/* Puts one value of the next record to be written aside; Field is its name in Read's answer. */
AUTOMATION_MEMBER(Set, Automation_In Field, Automation_In Value)
/* Changes a record to the values put aside, which are then forgotten; its other values stay as they are. A
 * record that does not exist is left so. Each change is noted in the store's history. What the store itself
 * refuses may come to light as late as End. */
AUTOMATION_MEMBER(Write, int32_t Kind, int32_t Node)
/* The same for a new detail record, whose other values are null. */
AUTOMATION_MEMBER(Add, int32_t Kind, int32_t Node)
AUTOMATION_MEMBER(Remove, int32_t Kind, int32_t Node)
AUTOMATION_END(Store_Records)
#undef AUTOMATION_SELF

#ifdef __cplusplus
} // namespace interfaces
#endif

#endif
