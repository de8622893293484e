// An editor at work on a store: its connection, its transactions, and who it is. Made and used by one thread.
//
// The components of one thread share a session, for it is one dialog that stands behind them; it ends with
// the last of them. A session's own changes are no conflict. Every other session's are, even in the same
// process.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "automation/interruption.h"
#include "connection.h"
#include "visit.h"

namespace stores {

// What throws rolls everything back that was done in the same transaction.
using Body = std::function<void(Connection&)>;

// One transaction: it is rolled back at its end unless it has been committed. Store_Error, also when one is
// open already.
class Transaction {
public:
    // A connection that was lost is opened again.
    Transaction(std::unique_ptr<Connection>& connection, Access access);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // The body's statements are a part of it; when it throws, nothing of the transaction can be committed.
    void Run(const Body& body);
    void Commit();

private:
    void Require_Open() const;

    const automation::Critical_Section critical;
    std::unique_ptr<Connection>& connection;
    enum class State { Open, Broken, Over } state = State::Open;
};

class Session {
public:
    explicit Session(std::unique_ptr<Connection> connection);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Runs body(connection) as one transaction, or as a part of the work that is under way.
    void Read(const Body& body) { Run(Access::Read, body); }
    void Write(const Body& body) { Run(Access::Write, body); }

    // One transaction over many operations, which see one state of the store. Store_Error while other work is
    // under way.
    void Begin_Work(Access access);
    // False when there is none.
    bool Commit_Work();
    void Roll_Back_Work() noexcept { work.reset(); }

    // For the next session.
    std::unique_ptr<Connection> Give_Back();

private:
    void Run(Access access, const Body& body);

    std::unique_ptr<Connection> connection;
    std::optional<Transaction> work;

public:
    Visit Editor;
};

} // namespace stores
