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
AUTOMATION_BEGIN(Store_History, Automation_Unknown, 0x1FD84B63, 0xA27E, 0x4395,
                 {0xB6, 0x0C, 0x48, 0xF1, 0x95, 0x7D, 0x2A, 0xE3})
/* Brings a store of an older layout up to this program's, in one transaction; one of this layout is left as
 * it is. Location as for Open. Result: its location. A failure's description says what to do. */
AUTOMATION_MEMBER(Upgrade, Automation_In Location, Automation_Text_Out Result)
/* Every change of a record since the store was made, the oldest first, as a persisted recordset of texts:
 * Change, Entry, At (UTC), By, DatabaseUser, Operation, Record, ConfigID, PartitionID, NodeNumber, Old, New,
 * Broken. The entries of one transaction have one Change. Old and New are JSON objects of the fields that
 * differ, each a text or null; they are null where there was no record, or is none any more. By is null for
 * another program that did not say who it worked for.
 * Broken: null, or the names of those values of the row, with blanks between them, that are none that the
 * history can have. They are cut short and escaped as in Store_Records' Read; Old and New are then no JSON.
 * An identifier that is Empty leaves the choice open. */
AUTOMATION_MEMBER(Read_Changes, Automation_In Location, Automation_In Config_ID, Automation_In Partition_ID,
                  Automation_In Node_Number, Automation_Out Result)
/* Takes back the changes First to Last, both decimal texts, by the values that the history holds: everything,
 * or nothing if anything is refused. A node that was changed after them is refused, unless Force. Dry_Run
 * changes nothing. Result: a persisted recordset of texts, a row for each record that changes or is refused:
 * ConfigID, PartitionID, NodeNumber, Record, Old (what it holds), New (what it is to hold), both as in
 * Read_Changes, and Refusal: null, or why, with who and when. A refusal that concerns no record, such as a
 * change that does not exist, has nothing else. Change: the number that takes this back in turn; empty when
 * nothing was changed. */
AUTOMATION_MEMBER(Revert, Automation_In Location, Automation_In First, Automation_In Last,
                  Automation_Boolean Force, Automation_Boolean Dry_Run, Automation_Out Result,
                  Automation_Text_Out Change)
AUTOMATION_END(Store_History)
#undef AUTOMATION_SELF

#ifdef __cplusplus
} // namespace interfaces
#endif

#endif
