// One connection to a store's database. SOCI is seen by this folder alone, and only through this header.
//
// Statements are plain SQL that SQLite and PostgreSQL both take; every value goes in as a bound one.
// Failures are soci::soci_error here; the callers turn them into a Store_Error or an automation::Failure.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "automation/failure.h"
#include "location.h"
#include "server_connection.h"
#include "watchdog.h"

#include <soci/sqlite3/soci-sqlite3.h>

namespace stores {

// What is bound to a placeholder: a key, a text, or null (a null pointer). No std::variant: that of g++ 12
// destroys a text that it has not made when memory runs out for a copy.
struct Value {
    Value(int key) : Key(key) {}
    Value(std::string text) : Text(std::move(text)) {}
    Value(const char* text) {
        if (text)
            Text = text;
    }

    std::optional<int> Key;
    std::optional<std::string> Text;
};
using Values = std::vector<Value>;

// The columns of one row; nothing for null.
using Row = std::vector<std::optional<automation::String>>;
// The same as the bytes that the store holds: UTF-8, unless somebody has put something else there.
using Byte_Row = std::vector<std::optional<std::string>>;
// The same as long as the database lends them.
using UTF8_Row = std::vector<std::optional<std::string_view>>;

// What Next fails with.
[[noreturn]] void Refuse_Other_Than_UTF8();

// A statement that is prepared at its first run and may run again with other values. Which of the values
// are keys must not change from one run to the next.
class Statement {
public:
    Statement(soci::session& session, std::string sql, std::size_t columns = 0);
    void Run(const Values& values = {});
    // The next row of the last run, written over `row`; false when there is none.
    bool Next(Row& row);
    // The same as the store holds it; the texts last until the next call.
    bool Next(UTF8_Row& row);
    // Runs it to its end, and gives the first row.
    std::optional<Byte_Row> First_Row(const Values& values = {});

private:
    struct Slot {
        int Key = 0;
        std::string Text;
        soci::indicator State = soci::i_ok;
    };
    void Prepare(const Values& values);
    bool Fetch();
    // In UTF-8, until the next row is fetched; nothing for null.
    std::optional<std::string_view> Column(std::size_t index) const;

    std::string sql;
    std::vector<Slot> in, out;
    bool prepared = false;
    const bool is_file;
    soci::sqlite3_statement_backend* file = nullptr; // null for a server, and before it is prepared
    soci::statement statement;                       // last: it refers to the slots
};

// The statements of one transaction, each prepared once.
class Statements {
public:
    explicit Statements(soci::session& session) : session(session) {}
    Statement& operator()(const std::string& sql, std::size_t columns = 0) {
        return kept.try_emplace(sql, session, sql, columns).first->second;
    }

private:
    soci::session& session;
    std::map<std::string, Statement> kept;
};

using Body = std::function<void(soci::session&)>;

// A server that went away is connected to again at the beginning of the next operation.
class Database {
public:
    // Store_Error when it cannot be reached.
    explicit Database(const Location& location);

    // Runs body(session) as one transaction while no other thread uses the connection; what it throws
    // rolls everything back. Within the calling thread's work it is a part of that.
    void In_Transaction(const Body& body);

    // The same for an operation of a component: what the database reports becomes an automation::Failure.
    void Operate(const Body& body);

    // Runs the body; what the database reports becomes a Store_Error that names the store.
    void Explain(const std::function<void()>& body);

    // Whom the server takes this program for; nothing for a file.
    const std::optional<std::string>& User() const { return user; }

    // Work is one transaction over many operations of one thread, which see one state of the store; other
    // threads wait for its end. From its begin to its end nobody else writes, if it `writes`. Failures are
    // those of Operate.
    void Begin_Work(bool writes);
    void End_Work(bool kept);

    const Location Place;

private:
    void Connect();
    void Begin();
    void Commit();
    void Roll_Back() noexcept;
    void As_Failure(const std::function<void()>& body);
    std::string Complaint(const soci::soci_error& error);

    std::recursive_mutex mutex;
    std::optional<std::unique_lock<std::recursive_mutex>> work;
    soci::session session;
    std::optional<std::string> user;
    std::optional<Watchdog> watchdog; // of a server; it goes before its connection
    bool committing = false;          // when a failure comes: nobody knows what became of the change
};

} // namespace stores
