#include "session.h"

#include "stores/store.h"

namespace stores {

namespace {

// What is known of a connection is asked first. One that was lost since the last operation is noticed only
// when something is asked of the server; nothing of this operation was sent yet.
void Begin(std::unique_ptr<Connection>& connection, Access access) {
    const bool is_new = !connection->Is_Alive();
    if (is_new)
        connection = Connection::Open(Location(connection->Place));
    try {
        connection->Begin(access);
    } catch (const Store_Error&) {
        if (is_new || connection->Is_Alive()) {
            if (!connection->Roll_Back())
                connection->Give_Up();
            throw;
        }
        connection = Connection::Open(Location(connection->Place));
        connection->Begin(access);
    }
}

} // namespace

Transaction::Transaction(std::unique_ptr<Connection>& connection, Access access) : connection(connection) {
    Begin(connection, access);
}

Transaction::~Transaction() {
    if (state != State::Over && !connection->Roll_Back())
        connection->Give_Up();
}

void Transaction::Require_Open() const {
    if (state != State::Open)
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + connection->Place.Name +
                              " was not changed: a part of the change had failed; begin it again");
}

void Transaction::Run(const Body& body) {
    Require_Open();
    try {
        body(*connection);
    } catch (...) {
        state = State::Broken;
        throw;
    }
}

void Transaction::Commit() {
    Require_Open();
    state = State::Broken;
    connection->Commit();
    state = State::Over;
}

Session::Session(std::unique_ptr<Connection> opened)
    : connection(std::move(opened)), Editor(connection->User()) {}

void Session::Run(Access access, const Body& body) {
    if (work)
        return work->Run(body);
    Transaction transaction(connection, access);
    transaction.Run(body);
    transaction.Commit();
}

void Session::Begin_Work(Access access) {
    if (work)
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + connection->Place.Name +
                              " is at work for this thread already; end that first");
    work.emplace(connection, access);
}

bool Session::Commit_Work() {
    if (!work)
        return false;
    work->Commit();
    work.reset();
    return true;
}

std::unique_ptr<Connection> Session::Give_Back() {
    work.reset();
    return std::move(connection);
}

} // namespace stores
