#include <system_error>

#include <sqlite3.h>

#include "automation/interruption.h"
#include "connection.h"
#include "store_file.h"
#include "stores/store.h"

namespace stores {

namespace {

// An operation waits five seconds for another program's transaction.
int Waits_For_Others(void*, int times) {
    constexpr int patience_milliseconds = 5000, pause = 10;
    if (times >= patience_milliseconds / pause || automation::Is_Interrupted())
        return 0;
    sqlite3_sleep(times < 5 ? 1 + times : pause);
    return 1;
}

// SQLite plays back a journal that it finds beside a file. In a folder where others may make files, that
// would let them write the store. This opens files as SQLite itself does, but no journal of someone else's.
class Careful_Files {
public:
    static const char* Name() {
        static Careful_Files registered;
        return registered.files.zName;
    }

private:
    Careful_Files() : files(*Usual()) {
        files.zName = "style-store";
        files.pNext = nullptr;
        files.xOpen = [](sqlite3_vfs*, const char* path, sqlite3_file* file, int flags, int* out) {
            const bool is_companion = (flags & (SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL)) != 0;
            if (is_companion && path && !Is_Trusted_Companion(path))
                return SQLITE_PERM;
            const int result = Usual()->xOpen(Usual(), path, file, flags, out);
            if (result != SQLITE_OK || !is_companion || !path || Is_Trusted_Companion(path))
                return result;
            file->pMethods->xClose(file);
            file->pMethods = nullptr;
            return SQLITE_PERM;
        };
        sqlite3_vfs_register(&files, 0);
    }
    ~Careful_Files() { sqlite3_vfs_unregister(&files); }
    static sqlite3_vfs* Usual() { return sqlite3_vfs_find(nullptr); }

    sqlite3_vfs files;
};

struct Closer {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Handle = std::unique_ptr<sqlite3, Closer>;
using Prepared = std::unique_ptr<sqlite3_stmt, Closer>;

const char* Advice(int result) {
    switch (result & 0xFF) {
    case SQLITE_NOTADB:
        return "name a file that style-editor store init has made";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "another program is using it; try again";
    case SQLITE_FULL:
        return "make room on the disk";
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
        return "check the rights of the file and its folder";
    case SQLITE_PERM:
        return "a journal beside it belongs to someone else; remove it, or keep the store in a folder of "
               "your own";
    case SQLITE_IOERR:
        return "check the disk and its free space";
    case SQLITE_CORRUPT:
        return "restore it from a copy, or make a new one with style-editor store init";
    default:
        return "";
    }
}

class File_Connection final : public Connection {
public:
    // No mutex: a connection is used by one thread at a time, and to take it for every column is a tenth of
    // reading a list.
    File_Connection(const Location& location, const std::string& path) : Connection(location) {
        sqlite3* opened = nullptr;
        const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                           Careful_Files::Name());
        handle.reset(opened);
        Check(result);
        sqlite3_extended_result_codes(opened, 1);
        sqlite3_busy_handler(opened, Waits_For_Others, nullptr);
        constexpr int steps = 10'000; // some milliseconds
        sqlite3_progress_handler(
            opened, steps, [](void*) { return automation::Is_Interrupted() ? 1 : 0; }, nullptr);
        // The file may come from anywhere.
        sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        roll_back = Compiled("ROLLBACK");
    }

    std::unique_ptr<Cursor> Prepare(const std::string& sql) override;

    // A transaction that reads first and writes then could not wait for another writer.
    void Begin(Access access) override { Execute(access == Access::Read ? "BEGIN" : "BEGIN IMMEDIATE"); }
    void Commit() override { Execute("COMMIT"); }
    bool Roll_Back() noexcept override {
        if (sqlite3_get_autocommit(handle.get()) == 0) {
            sqlite3_step(roll_back.get());
            sqlite3_reset(roll_back.get());
        }
        return sqlite3_get_autocommit(handle.get()) != 0;
    }

    void Give_Up() noexcept override {
        roll_back.reset();
        handle.reset();
    }
    bool Is_Alive() const noexcept override { return handle != nullptr; }

    Prepared Compiled(const std::string& sql) const {
        sqlite3_stmt* statement = nullptr;
        const int result = sqlite3_prepare_v2(handle.get(), sql.c_str(), static_cast<int>(sql.size()) + 1,
                                              &statement, nullptr);
        Prepared compiled(statement);
        Check(result);
        return compiled;
    }
    // Throws unless it is a good result.
    void Check(int result) const {
        if (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE)
            return;
        if ((result & 0xFF) == SQLITE_NOMEM)
            throw std::bad_alloc();
        std::string said = handle ? sqlite3_errmsg(handle.get()) : sqlite3_errstr(result);
        std::string advice = Advice(result);
        if (const int error = handle ? sqlite3_system_errno(handle.get()) : 0;
            error != 0 && !advice.empty()) {
            said += " (" + std::generic_category().message(error) + ")";
            advice = File_Advice(error);
        }
        throw Store_Error(
            Store_Error::Reason::Unusable,
            "The store " + Place.Name +
                (advice.empty() ? " refused it: " + said : " cannot be used: " + said + "; " + advice));
    }

    std::string Image() const {
        sqlite3_int64 size = 0;
        const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
            sqlite3_serialize(handle.get(), "main", &size, 0), sqlite3_free);
        if (!bytes)
            throw std::bad_alloc();
        return {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
    }

private:
    void Execute(const char* sql) const { Check(sqlite3_step(Compiled(sql).get())); }

    Handle handle;
    Prepared roll_back; // compiled while there is memory
};

class File_Cursor final : public Cursor {
public:
    File_Cursor(const File_Connection& connection, const std::string& sql)
        : connection(connection), statement(connection.Compiled(sql)),
          columns(static_cast<std::size_t>(sqlite3_column_count(statement.get()))) {}

    void Run(const Values& values) override {
        sqlite3_reset(statement.get());
        is_over = false;
        for (std::size_t index = 0; index < values.size(); ++index)
            connection.Check(Bind(static_cast<int>(index) + 1, values[index]));
        if (columns == 0)
            Step();
    }
    bool Next(UTF8_Row& row) override {
        if (columns == 0 || is_over || !Step())
            return false;
        row.resize(columns);
        for (std::size_t index = 0; index < columns; ++index)
            row[index] = Column(static_cast<int>(index));
        return true;
    }

private:
    int Bind(int position, const Value& value) const {
        if (value.Key)
            return sqlite3_bind_int(statement.get(), position, *value.Key);
        if (!value.Text)
            return sqlite3_bind_null(statement.get(), position);
        return sqlite3_bind_text64(statement.get(), position, value.Text->data(), value.Text->size(),
                                   SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    // What a statement holds has to go before the transaction ends.
    bool Step() {
        const int result = sqlite3_step(statement.get());
        is_over = result != SQLITE_ROW;
        if (is_over)
            sqlite3_reset(statement.get());
        connection.Check(result);
        return !is_over;
    }
    // One value, asked once: the column interface would look it up for every question.
    std::optional<std::string_view> Column(int column) const {
        auto* const value = sqlite3_column_value(statement.get(), column);
        const auto* const text = sqlite3_value_text(value);
        if (!text && sqlite3_value_type(value) != SQLITE_NULL)
            throw std::bad_alloc();
        if (!text)
            return std::nullopt;
        return std::string_view(reinterpret_cast<const char*>(text),
                                static_cast<std::size_t>(sqlite3_value_bytes(value)));
    }

    const File_Connection& connection;
    const Prepared statement;
    const std::size_t columns;
    bool is_over = true;
};

std::unique_ptr<Cursor> File_Connection::Prepare(const std::string& sql) {
    return std::make_unique<File_Cursor>(*this, sql);
}

} // namespace

std::unique_ptr<Connection> Open_File(const Location& location) {
    const Pinned_File pinned(location);
    return std::make_unique<File_Connection>(location, pinned.Path());
}

std::string File_Image(const Location& location, const std::function<void(Connection&)>& fill) {
    File_Connection memory(location, ":memory:");
    fill(memory);
    return memory.Image();
}

} // namespace stores
