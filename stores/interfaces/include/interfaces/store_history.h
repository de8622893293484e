/* The history of a store, and its upgrade to this program's layout. For C and C++.
 *
 * The keeper of the store (interfaces/store_keeper.h) answers for this interface too. */
#ifndef STYLE_NODE_STORE_HISTORY_H
#define STYLE_NODE_STORE_HISTORY_H

#include "automation/interface.h"

#ifdef __cplusplus
namespace interfaces {
#endif

#define AUTOMATION_SELF Store_History
AUTOMATION_BEGIN(Store_History, Automation_Unknown, 0x7D3B52E8, 0x64C1, 0x4B0D,
                 {0x95, 0x2A, 0xE1, 0x0F, 0x37, 0xD8, 0x6C, 0x49})
/* Brings a store of an older layout up to this program's, in one transaction; one of this layout is left as
 * it is. Location as for Open. Result: its location. A failure's description says what to do. */
AUTOMATION_MEMBER(Upgrade, Automation_In Location, Automation_Text_Out Result)
/* Every change of a record since the store was made, the oldest first, as a persisted recordset of texts:
 * Change, At (UTC), By, DatabaseUser, Operation, Record, ConfigID, PartitionID, NodeNumber, Old, New. Old and
 * New are JSON objects of the fields that differ; null where there was no record, or is none any more.
 * An identifier that is Empty leaves the choice open. */
AUTOMATION_MEMBER(Read_Changes, Automation_In Location, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_Out Result)
AUTOMATION_END(Store_History)
#undef AUTOMATION_SELF

#ifdef __cplusplus
} // namespace interfaces
#endif

#endif
