// Writes of many records of one partition within the transaction of a change. A server gets thousands with
// one statement, at Flush at the latest and not in the order of the calls. In a file each takes place at
// once, which is faster there.
#pragma once

#include <set>

#include "change.h"

namespace stores {

class Record_Batch {
public:
    // `change` has locked the partition.
    Record_Batch(Change& change, int config, int partition);

    using Fields = std::vector<std::pair<std::string, Value>>; // by column
    // `keys`: those of the record behind configuration and partition. The other columns keep their values; a
    // record that does not exist is left so.
    void Update(const Record_Kind& kind, const Values& keys, const Fields& fields);
    // The other columns are null.
    void Insert(const Record_Kind& kind, const Values& keys, const Fields& fields);
    void Delete(const Record_Kind& kind, const Values& keys);
    void Flush();

private:
    enum class Action { Update, Insert, Delete };
    struct Group {
        std::string SQL;
        std::string Rows; // JSON arrays: the keys, then the values
        int Count = 0;
    };
    void Put(Action action, const Record_Kind& kind, const Values& keys, const Fields& fields);
    std::string SQL_For(Action action, const Record_Kind& kind, const Fields& fields) const;
    void Write(Group& group);
    void Write_Now(Action action, const std::string& sql, const Values& keys, const Fields& fields);

    Change& change;
    const int config, partition;
    std::vector<Group> groups;     // each with a statement of its own
    std::set<std::string> waiting; // the records in them
};

} // namespace stores
