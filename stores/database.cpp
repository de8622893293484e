#include "database.h"

#include <soci/sqlite3/soci-sqlite3.h>

#include "automation/text.h"
#include "store_file.h"
#include "stores/store.h"

namespace stores {

namespace {

using automation::From_UTF8;

// Seconds that an operation waits for another program's transaction.
constexpr const char* Patience = " timeout=5";

void Open_File(soci::session& session, const Location& location) {
    const Pinned_File pinned(location);
    session.open(*soci::factory_sqlite3(), "dbname=" + pinned.Path() + Patience);
}

// SOCI takes the URL apart at an equals sign and spoils one that has none.
std::string With_An_Option(const std::string& url) {
    if (url.find('=') != std::string::npos)
        return url;
    return url + (url.find('?') == std::string::npos ? '?' : '&') + "application_name=style-editor";
}

void Open_Server(soci::session& session, const Location& location) {
    // The library is named in full so that the system's loader looks for it: the registry's own search
    // begins in the current folder.
    const std::string backend = "postgresql";
    try {
        soci::dynamic_backends::register_backend(backend, "libsoci_postgresql.so.4.0");
    } catch (const soci::soci_error&) {
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + location.Name +
                              " needs SOCI's PostgreSQL backend; install the package libsoci-postgresql4.0");
    }
    session.open(backend, With_An_Option(location.Target));
}

// What the database said, without the name of the procedure that heard it.
std::string Plain_Message(const soci::soci_error& error) {
    std::string text = error.get_error_message();
    if (text.starts_with("sqlite3_"))
        text.erase(0, text.find(": ") + 2);
    for (char& character : text)
        if (character == '\n' || character == '\r')
            character = ' ';
    return text.substr(0, text.find_last_not_of(" .") + 1);
}

const char* Advice(const soci::soci_error& error) {
    const auto* file_error = dynamic_cast<const soci::sqlite3_soci_error*>(&error);
    if (!file_error)
        return "check the server's address, your rights and that the server runs";
    switch (file_error->result() & 0xFF) {
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
    default:
        return "restore it from a copy, or make a new one with style-editor store init";
    }
}

} // namespace

Statement::Statement(soci::session& session, std::string text, std::size_t columns)
    : sql(std::move(text)), out(columns), statement(session) {}

void Statement::Prepare(const Values& values) {
    in.resize(values.size());
    for (std::size_t index = 0; index < values.size(); ++index) {
        if (std::holds_alternative<int>(values[index].Held))
            statement.exchange(soci::use(in[index].Key));
        else
            statement.exchange(soci::use(in[index].Text, in[index].State));
    }
    for (Slot& slot : out)
        statement.exchange(soci::into(slot.Text, slot.State));
    statement.alloc();
    statement.prepare(sql);
    statement.define_and_bind();
    prepared = true;
}

void Statement::Run(const Values& values) {
    if (!prepared)
        Prepare(values);
    for (std::size_t index = 0; index < values.size(); ++index) {
        const auto& held = values[index].Held;
        Slot& slot = in[index];
        slot.State = std::holds_alternative<std::monostate>(held) ? soci::i_null : soci::i_ok;
        if (const auto* key = std::get_if<int>(&held))
            slot.Key = *key;
        else if (const auto* text = std::get_if<std::string>(&held))
            slot.Text = *text;
    }
    statement.execute(out.empty());
}

bool Statement::Next(Row& row) {
    if (!statement.fetch())
        return false;
    row.resize(out.size());
    for (std::size_t index = 0; index < out.size(); ++index) {
        row[index].reset();
        if (out[index].State == soci::i_null)
            continue;
        row[index] = From_UTF8(out[index].Text);
        if (!row[index])
            throw automation::Failure(automation::Status_Unspecified,
                                      u"The store holds a text that is not UTF-8");
    }
    return true;
}

Database::Database(const Location& location) : Place(location) {
    Explain(location,
            [&] { location.Is_File ? Open_File(session, location) : Open_Server(session, location); });
}

void Database::Operate(const std::function<void(soci::session&)>& body) {
    try {
        In_Transaction(body);
    } catch (const soci::soci_error& error) {
        throw automation::Failure(automation::Status_Unspecified,
                                  From_UTF8(Plain_Message(error)).value_or(u"The store could not be used"));
    }
}

void Explain(const Location& location, const std::function<void()>& body) {
    try {
        body();
    } catch (const soci::soci_error& error) {
        throw Store_Error(Store_Error::Reason::Unusable, "The store " + location.Name + " cannot be used: " +
                                                             Plain_Message(error) + "; " + Advice(error));
    }
}

} // namespace stores
