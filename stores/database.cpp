#include "database.h"

#include "automation/text.h"
#include "store_file.h"
#include "stores/store.h"

namespace stores {

namespace {

constexpr int Patience_Milliseconds = 5000; // that an operation waits for another program's transaction

// SOCI gets a connection that has no mutex of its own, for which it has no option: a Database is used by one
// thread at a time, and to take the mutex for every column is a tenth of reading a list.
void Open_File(soci::session& session, const Location& location) {
    using namespace sqlite_api;
    const Pinned_File pinned(location);
    session.open(*soci::factory_sqlite3(), "dbname=:memory:");
    auto*& connection = static_cast<soci::sqlite3_session_backend*>(session.get_backend())->conn_;
    sqlite3_close(std::exchange(connection, nullptr));
    const int result = sqlite3_open_v2(pinned.Path().c_str(), &connection,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK)
        throw soci::sqlite3_soci_error(sqlite3_errmsg(connection), result);
    sqlite3_busy_timeout(connection, Patience_Milliseconds);
}

// What the database said, without the name of the procedure that heard it.
std::string Plain_Message(const soci::soci_error& error) {
    std::string text = error.get_error_message();
    if (text.starts_with("sqlite3_"))
        text.erase(0, text.find(": ") + 2);
    for (char& character : text)
        if (character == '\n' || character == '\r' || character == '\t')
            character = ' ';
    return text.substr(0, text.find_last_not_of(" .") + 1);
}

const char* Advice_On_File(const soci::sqlite3_soci_error& error) {
    switch (error.result() & 0xFF) {
    case SQLITE_NOTADB:
        return "name a file that style-editor store init has made";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "another program is using it; try again";
    case SQLITE_FULL:
        return "make room on the disk";
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_READONLY:
        return "check the rights of the file and its folder";
    case SQLITE_CONSTRAINT:
        return "";
    default:
        return "restore it from a copy, or make a new one with style-editor store init";
    }
}

// What a server that is connected to refuses is mostly the caller's affair.
const char* Advice_On_Server(const soci::soci_error& error) {
    if (error.get_error_category() == soci::soci_error::no_privilege)
        return "ask the store's administrator for the rights of an editor";
    const bool is_locked = error.get_error_message().find("lock timeout") != std::string::npos;
    return is_locked ? "another program is using it; try again" : "";
}

void Replace_All(std::string& text, const std::string& from, const std::string& to) {
    if (from.empty())
        return;
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

} // namespace

Statement::Statement(soci::session& session, std::string text, std::size_t columns)
    : sql(std::move(text)), out(columns), is_file(session.get_backend_name() == "sqlite3"),
      statement(session) {}

void Statement::Prepare(const Values& values) {
    in.resize(values.size());
    for (std::size_t index = 0; index < values.size(); ++index) {
        if (values[index].Key)
            statement.exchange(soci::use(in[index].Key));
        else
            statement.exchange(soci::use(in[index].Text, in[index].State));
    }
    for (Slot& slot : out)
        statement.exchange(soci::into(slot.Text, slot.State));
    statement.alloc();
    statement.prepare(sql);
    statement.define_and_bind();
    if (is_file)
        file = static_cast<soci::sqlite3_statement_backend*>(statement.get_backend());
    prepared = true;
}

void Statement::Run(const Values& values) {
    if (!prepared)
        Prepare(values);
    for (std::size_t index = 0; index < values.size(); ++index) {
        const Value& value = values[index];
        Slot& slot = in[index];
        slot.State = value.Key || value.Text ? soci::i_ok : soci::i_null;
        if (value.Key)
            slot.Key = *value.Key;
        else if (value.Text)
            slot.Text = *value.Text;
    }
    Watchdog::Ask();
    statement.execute(out.empty());
}

// SQLite is asked itself: SOCI would copy each column and ask three times for it.
bool Statement::Fetch() {
    if (!file)
        return statement.fetch();
    const int result = sqlite_api::sqlite3_step(file->stmt_);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        throw soci::sqlite3_soci_error(sqlite_api::sqlite3_errmsg(sqlite_api::sqlite3_db_handle(file->stmt_)),
                                       result);
    return result == SQLITE_ROW;
}

std::optional<std::string_view> Statement::Column(std::size_t index) const {
    if (!file)
        return out[index].State == soci::i_null ? std::nullopt
                                                : std::optional<std::string_view>(out[index].Text);
    const auto column = static_cast<int>(index);
    const auto* text = sqlite_api::sqlite3_column_text(file->stmt_, column);
    if (!text && sqlite_api::sqlite3_column_type(file->stmt_, column) != SQLITE_NULL)
        throw std::bad_alloc();
    if (!text)
        return std::nullopt;
    const auto length = sqlite_api::sqlite3_column_bytes(file->stmt_, column);
    return std::string_view(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
}

bool Statement::Next(Row& row) {
    if (!Fetch())
        return false;
    row.resize(out.size());
    for (std::size_t index = 0; index < out.size(); ++index) {
        const auto column = Column(index);
        if (!column) {
            row[index].reset();
            continue;
        }
        if (!row[index])
            row[index].emplace();
        if (!automation::Convert_UTF8(*column, *row[index]))
            Refuse_Other_Than_UTF8();
    }
    return true;
}

bool Statement::Next(UTF8_Row& row) {
    if (!Fetch())
        return false;
    row.resize(out.size());
    for (std::size_t index = 0; index < out.size(); ++index)
        row[index] = Column(index);
    return true;
}

std::optional<Byte_Row> Statement::First_Row(const Values& values) {
    Run(values);
    if (!Fetch())
        return std::nullopt;
    Byte_Row row;
    for (std::size_t index = 0; index < out.size(); ++index)
        row.emplace_back(Column(index));
    while (Fetch())
        continue;
    return row;
}

void Refuse_Other_Than_UTF8() {
    throw automation::Failure(automation::Status_Unspecified, u"The store holds a text that is not UTF-8");
}

Database::Database(const Location& location) : Place(location) {
    Explain([&] { Connect(); });
}

void Database::Connect() {
    watchdog.reset();
    session.close();
    if (Place.Is_File)
        return Open_File(session, Place);
    Open_Server(session, Place);
    watchdog.emplace(Socket_Of(session, Place), Patience_For(Place));
    const Watchdog::Watch watch(&*watchdog);
    if (!user) // it stays the same, and other threads may be reading it
        user = Statement(session, "SELECT session_user", 1).First_Row().value()[0];
}

void Database::Begin() {
    committing = false;
    if (Place.Is_File)
        return session.begin();
    const bool known_to_be_gone = !Is_Connected(session, Place);
    if (known_to_be_gone)
        Connect();
    const auto begin = [&] {
        const Watchdog::Watch watch(&*watchdog);
        session.begin();
    };
    try {
        begin();
    } catch (const soci::soci_error&) {
        if (known_to_be_gone || Is_Connected(session, Place) || watchdog->Has_Bitten())
            throw;
        Connect(); // it went away after the last operation; nothing of this one was sent
        begin();
    }
}

void Database::Commit() {
    committing = true;
    Watchdog::Ask();
    session.commit();
    committing = false;
}

void Database::Roll_Back() noexcept {
    try {
        Watchdog::Ask();
        session.rollback();
    } catch (const soci::soci_error&) {
        // With the connection the transaction is gone too.
    }
}

void Database::In_Transaction(const Body& body) {
    const std::lock_guard hold(mutex);
    if (!work)
        Begin();
    const Watchdog::Watch watch(watchdog ? &*watchdog : nullptr);
    if (work)
        return body(session);
    try {
        body(session);
        Commit();
    } catch (...) {
        Roll_Back();
        throw;
    }
}

void Database::As_Failure(const std::function<void()>& body) {
    try {
        body();
    } catch (const soci::soci_error& error) {
        throw automation::Failure(automation::Status_Unspecified,
                                  automation::From_UTF8_Replacing(Complaint(error)));
    }
}

void Database::Operate(const Body& body) {
    As_Failure([&] { In_Transaction(body); });
}

void Database::Begin_Work(bool writes) {
    std::unique_lock hold(mutex);
    As_Failure([&] {
        Begin();
        const Watchdog::Watch watch(watchdog ? &*watchdog : nullptr);
        try {
            if (writes) // every writer takes a number first, and waits here
                Statement(session, "UPDATE change_counter SET last_change = last_change").Run();
            else if (!Place.Is_File)
                Statement(session, "SET TRANSACTION ISOLATION LEVEL REPEATABLE READ").Run();
        } catch (...) {
            Roll_Back();
            throw;
        }
    });
    work = std::move(hold);
}

void Database::End_Work(bool kept) {
    const auto hold = std::exchange(work, std::nullopt);
    const Watchdog::Watch watch(watchdog ? &*watchdog : nullptr);
    if (!hold || !kept)
        return Roll_Back();
    As_Failure([&] {
        try {
            Commit();
        } catch (const soci::soci_error&) {
            Roll_Back();
            throw;
        }
    });
}

void Database::Explain(const std::function<void()>& body) {
    try {
        body();
    } catch (const soci::soci_error& error) {
        throw Store_Error(Store_Error::Reason::Unusable, Complaint(error));
    }
}

// One line that names the store and says what to do, without a password.
std::string Database::Complaint(const soci::soci_error& error) {
    const auto* file_error = dynamic_cast<const soci::sqlite3_soci_error*>(&error);
    const bool is_lost = !Place.Is_File && !Is_Connected(session, Place);
    std::string said = Plain_Message(error);
    std::string advice = file_error ? Advice_On_File(*file_error) : Advice_On_Server(error);
    if (is_lost)
        advice = watchdog ? "try again when the server runs"
                          : "check the server's address, your rights and that the server runs";
    if (watchdog && watchdog->Has_Bitten())
        said = "the server did not answer in time";
    Replace_All(said, Place.Target, Place.Name);
    for (const std::string& secret : Place.Secrets)
        Replace_All(said, secret, "***");
    if (is_lost && committing)
        said += "; whether the change was stored is not known";
    if (advice.empty())
        return "The store " + Place.Name + " refused it: " + said;
    return "The store " + Place.Name + " cannot be used: " + said + "; " + advice;
}

} // namespace stores
