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
AUTOMATION_BEGIN(Store_Records, Automation_Unknown, 0x362F08DA, 0x9601, 0x412C,
                 {0x8E, 0xDD, 0x7F, 0x5E, 0x44, 0x17, 0x31, 0x91})
#ifdef __cplusplus
static constexpr automation::String_View Program_Identity = STORE_RECORDS_PROGRAM_IDENTITY;
#endif
/* From here to End, everything that this thread does to the store is one transaction on one state of it; if
 * it Writes, nobody else does meanwhile. A failure leaves it open, to be ended without Kept. */
AUTOMATION_MEMBER(Begin, Automation_In Config_ID, Automation_In Partition_ID, Automation_Boolean Writes)
/* Kept: the changes count from now on; else nothing has happened. The last reference's end is an End without
 * it. */
AUTOMATION_MEMBER(End, Automation_Boolean Kept)
/* The records of one kind as a persisted recordset, by node: NodeNumber, then the values. */
AUTOMATION_MEMBER(Read, int32_t Kind, Automation_Out Result)
/* Puts one value of the next record to be written aside; Field is its name in Read's answer. */
AUTOMATION_MEMBER(Set, Automation_In Field, Automation_In Value)
/* Changes a record to the values put aside, which have to be all of its kind and are then forgotten. Each
 * change is noted in the store's history. */
AUTOMATION_MEMBER(Write, int32_t Kind, int32_t Node)
/* The same for a new detail record. */
AUTOMATION_MEMBER(Add, int32_t Kind, int32_t Node)
AUTOMATION_MEMBER(Remove, int32_t Kind, int32_t Node)
AUTOMATION_END(Store_Records)
#undef AUTOMATION_SELF

#ifdef __cplusplus
} // namespace interfaces
#endif

#endif
