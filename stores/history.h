// The history of a store, and what takes it back; see interfaces/store_history.h. What the tables hold may be
// anything.
#pragma once

#include <array>
#include <functional>

#include "automation/variant.h"
#include "change.h"
#include "stored_text.h"

namespace stores {

// An entry of the history. Columns[n] is what Entry_Columns[n] holds, as UTF-8 that a document can carry.
inline constexpr std::array Entry_Columns{
    "change",    "entry",        "changed_at",  "changed_by",   "database_user", "operation", "record",
    "config_id", "partition_id", "node_number", "node_type_id", "old_values",    "new_values"};
struct Entry {
    Byte_Row Columns;
    std::string Broken; // names of the columns that hold what none can hold; they are escaped and cut short
    const Record_Kind* Kind = nullptr;
    Values Keys; // of the record
    std::optional<Members> Old, New;

    const std::string& Change_Number() const { return *Columns[0]; }
};

// The entries that a condition chooses, in the order given. One that cannot be understood has Broken and
// neither Kind nor Keys nor values.
void Read_Entries(Connection& connection, const std::string& condition, const Values& values,
                  const std::function<void(Entry&)>& take);

// `keys`: configuration, partition and node; Empty leaves the choice open. Throws automation::Failure.
automation::Variant Changes_Of(Session& session, const std::array<const automation::Variant*, 3>& keys);

struct Reverted {
    automation::Variant Rows;
    std::string Change; // empty when nothing was changed
};
Reverted Revert(Session& session, const std::string& first, const std::string& last, bool force,
                bool dry_run);

} // namespace stores
