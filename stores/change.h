// The one way in which nodes are written: a change, for the components and for whoever else writes nodes. The
// database writes the history of it; a change tells it who writes and keeps other writers of the partition
// away.
//
// It lives within one transaction, on its thread. Failures are Store_Error, except for a node that someone
// else has changed meanwhile and for a partition that someone else is writing.
#pragma once

#include "schema.h"
#include "session.h"

namespace stores {

// One record, and the values of its keys.
struct Record {
    const Record_Kind& Kind;
    Values Keys;
};

class Change {
public:
    // `operation` is what the history calls it. Within another change of the session it is a part of that.
    Change(Connection& connection, Visit& visit, const std::string& operation);
    ~Change();
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    // Before anything of the partition is looked at or written: what is read from then on stays as it is.
    void Lock(int config, int partition);

    // automation::Failure, which says who and when, if someone else has changed the node since the visit read
    // it.
    void Check_Conflict(const Values& keys);

    // Values in the order of the kind's columns. A record that is not there, or holds them already, is left
    // as it is and is no change for the history.
    void Update(const Record& record, const Values& values);
    // A failure when the record exists.
    void Insert(const Record& record, const Values& values);
    void Delete(const Record& record);

    // The number under which the history has it; empty while nothing was changed.
    std::string Number();
    // Comes before the commit: what else is written is another program's.
    void Close();

    Statements& Prepared() { return statements; }
    bool Is_File() const { return connection.Is_File(); }

private:
    void Sign(const std::string& operation);

    Connection& connection;
    Statements statements;
    Visit& visit;
    const bool is_part;
};

// What a later change of the partition has to be compared with: the number of the last one; "0" before the
// first.
std::string Last_Change(Connection& connection, int config, int partition);

// "bob@desk at 2026-11-23 17:05:09 (UTC)", from changed_by, changed_at and database_user.
std::string Who_And_When(const Byte_Row& row);
// The same for a change with that number, in any partition.
std::string Who_And_When(Connection& connection, const std::string& change);

} // namespace stores
