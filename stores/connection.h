// One connection to a store's database, straight on the C libraries of SQLite and PostgreSQL. Each is seen by
// one source alone.
//
// Statements are plain SQL that both take, with placeholders `:name`; every value goes in as a bound one.
// What the database reports becomes a Store_Error on the spot: one line that names the store and says what to
// do. A connection is used by one thread at a time.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/failure.h"
#include "location.h"

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

// A prepared statement of one driver.
class Cursor {
public:
    virtual ~Cursor() = default;
    // Binds the values to the placeholders in the order of their first appearance. A statement that gives no
    // rows is over with this.
    virtual void Run(const Values& values) = 0;
    // The next row of the last run, whose texts last until the next call; false when there is none.
    virtual bool Next(UTF8_Row& row) = 0;
};

enum class Access { Read, Write };

class Connection {
public:
    // A file must exist. Store_Error when the store is out of reach.
    static std::unique_ptr<Connection> Open(const Location& location);

    virtual ~Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    virtual std::unique_ptr<Cursor> Prepare(const std::string& sql) = 0;

    // Everything read in one transaction is one state of the store. One that writes waits for the other
    // writers of a file here.
    virtual void Begin(Access access) = 0;
    virtual void Commit() = 0;
    // False: only giving the connection up ends the transaction. Takes no memory on a file.
    virtual bool Roll_Back() noexcept = 0;
    virtual void Give_Up() noexcept = 0;

    // False when it was given up or is known to be lost; nobody is asked.
    virtual bool Is_Alive() const noexcept = 0;
    // Whom the server takes this program for; nothing for a file.
    virtual std::optional<std::string> User() const { return std::nullopt; }

    bool Is_File() const { return Place.Is_File; }

    const Location Place;

protected:
    explicit Connection(Location place) : Place(std::move(place)) {}
};

// The two ways to open one, for Connection::Open.
std::unique_ptr<Connection> Open_File(const Location& location);
std::unique_ptr<Connection> Open_Server(const Location& location);

// The bytes of a file that holds what `fill` stores; the location is for messages only.
std::string File_Image(const Location& location, const std::function<void(Connection&)>& fill);

// A statement that is prepared at its first run and may run again with other values.
class Statement {
public:
    Statement(Connection& connection, std::string sql) : connection(&connection), sql(std::move(sql)) {}
    void Run(const Values& values = {});
    // The next row of the last run, written over `row`; false when there is none.
    bool Next(Row& row);
    // The same as the store holds it; the texts last until the next call.
    bool Next(UTF8_Row& row) { return cursor->Next(row); }
    // Runs it to its end, and gives the first row.
    std::optional<Byte_Row> First_Row(const Values& values = {});

private:
    Connection* connection;
    std::string sql;
    std::unique_ptr<Cursor> cursor;
    UTF8_Row lent; // its room is used again
};

// The statements of one transaction, each prepared once.
class Statements {
public:
    explicit Statements(Connection& connection) : connection(connection) {}
    Statement& operator()(const std::string& sql) {
        return kept.try_emplace(sql, connection, sql).first->second;
    }

private:
    Connection& connection;
    std::map<std::string, Statement> kept;
};

} // namespace stores
