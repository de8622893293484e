// The one way in which a record of a node is written: a change and its line in the store's history, both in
// the transaction of the caller, for the components and for whoever else writes nodes.
//
// A change takes the store's next number before it looks at anything. Until the transaction ends no other
// program gets one, so numbers follow the order of the transactions and what is read stays as it is. Failures
// are Store_Error, except for a node that someone else has changed meanwhile.
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
    // `operation` is what the history calls it. The statements may serve any number of changes.
    Change(Statements& statements, const Visit& visit, std::string operation, Record record);

    // automation::Failure, which says who and when, if somebody else has changed the node since the visit
    // read it.
    void Require_Unchanged();

    // Values in the order of the kind's columns. A record that is not there, or holds them already, is left
    // as it is and is no change for the history.
    void Update(const Values& values);
    // A failure when the record exists.
    void Insert(const Values& values);
    void Delete();

private:
    std::optional<Byte_Row> Present();
    void Note(const std::optional<Byte_Row>& before, const std::optional<Byte_Row>& after);

    Statements& statements;
    const Visit& visit;
    const std::string operation;
    const Record record;
    std::string number;
};

// The number of the last change; "0" before the first.
std::string Last_Change(Connection& connection);

} // namespace stores
