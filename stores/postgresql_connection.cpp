#include <algorithm>
#include <cctype>
#include <charconv>
#include <chrono>
#include <poll.h>

#include <libpq-fe.h>

#include "automation/interruption.h"
#include "connection.h"
#include "stores/store.h"

namespace stores {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

constexpr int Text_Format = 0;

// What the client library said, in one line.
std::string One_Line(std::string_view text) {
    std::string line;
    for (const char character : text)
        if (std::isspace(static_cast<unsigned char>(character)) == 0)
            line += character;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    return line.substr(0, line.find_last_not_of(" .") + 1);
}

// How long a server may take to be connected to, and to show that it is alive: connect_timeout, else 10
// seconds; 0 stands for ever.
seconds Patience_For(const Location& location) {
    constexpr int usual = 10, most = 3600;
    for (const auto& [keyword, value] : location.Options)
        if (keyword == "connect_timeout") {
            int given = usual; // what is no number is the client library's to refuse
            std::from_chars(value.data(), value.data() + value.size(), given);
            return seconds(std::clamp(given, 0, most));
        }
    return seconds(usual);
}

// The address as the client library takes it, completed by what every connection of ours has.
class Parameters {
public:
    Parameters(const Location& location, seconds patience) : options(location.Options) {
        Add("application_name", "style-editor");
        Add("connect_timeout", std::to_string(patience.count()));
        // A network that has gone is noticed within the same time.
        if (patience.count() > 0) {
            const auto interval = std::max<long>(patience.count() / 4, 1);
            Add("keepalives_idle", std::to_string(interval));
            Add("keepalives_interval", std::to_string(interval));
            Add("keepalives_count", "3");
            Add("tcp_user_timeout", std::to_string(milliseconds(patience).count()));
        }
        std::erase_if(options, [](const auto& option) { return option.first == "client_encoding"; });
        Add("client_encoding", "UTF8"); // whatever the address says
        for (const auto& [keyword, value] : options) {
            keywords.push_back(keyword.c_str());
            values.push_back(value.c_str());
        }
        keywords.push_back(nullptr);
        values.push_back(nullptr);
    }

    PGconn* Connect() const { return PQconnectdbParams(keywords.data(), values.data(), 0); }
    bool Server_Answers() const {
        const PGPing ping = PQpingParams(keywords.data(), values.data(), 0);
        return ping == PQPING_OK || ping == PQPING_REJECT;
    }

private:
    void Add(const char* keyword, const std::string& value) {
        if (std::none_of(options.begin(), options.end(),
                         [&](const auto& each) { return each.first == keyword; }))
            options.emplace_back(keyword, value);
    }

    std::vector<std::pair<std::string, std::string>> options;
    std::vector<const char*> keywords, values;
};

class Server_Connection final : public Connection {
public:
    explicit Server_Connection(const Location& location)
        : Connection(location), patience(Patience_For(location)), parameters(location, patience),
          handle(parameters.Connect(), PQfinish) {
        if (!handle)
            throw std::bad_alloc();
        if (!Is_Alive())
            Fail("cannot be used: " + One_Line(PQerrorMessage(handle.get())) +
                 "; check the server's address, your rights and that the server runs");
        PQsetNoticeProcessor(
            handle.get(), [](void*, const char*) {}, nullptr);
        // Another program's locks are waited for half as long as the server itself; a statement may take
        // longer.
        const auto time = milliseconds(patience).count();
        Execute("SET lock_timeout = " + std::to_string(time / 2) +
                "; SET statement_timeout = " + std::to_string(time * Longest_Statement));
    }

    std::unique_ptr<Cursor> Prepare(const std::string& sql) override;

    void Begin(Access access) override {
        committing = false;
        Execute(access == Access::Read ? "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY" : "BEGIN");
    }
    void Commit() override {
        committing = true;
        const Result result = Execute("COMMIT");
        committing = false;
        if (PQcmdStatus(result.get()) != std::string_view("COMMIT"))
            Fail("refused it: a part of the change had failed, so nothing of it was stored");
    }
    bool Roll_Back() noexcept override {
        if (is_silent || !Is_Alive())
            return false;
        try {
            Execute("ROLLBACK");
            return true;
        } catch (...) {
            return false;
        }
    }
    void Give_Up() noexcept override { handle.reset(); }
    bool Is_Alive() const noexcept override { return handle && PQstatus(handle.get()) == CONNECTION_OK; }
    std::optional<std::string> User() const override { return PQuser(handle.get()); }

    // Sends the request by `send` and waits for the answer to it.
    template <typename Send>
    Result Ask(Send&& send) {
        if (send(handle.get()) != 1)
            Fail_With(nullptr);
        Result last(nullptr, PQclear);
        while (Result next = Answer()) {
            const auto status = PQresultStatus(next.get());
            if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
                Fail_With(next.get());
            last = std::move(next);
        }
        return last;
    }
    Result Execute(const std::string& sql) {
        return Ask([&](PGconn* connection) { return PQsendQuery(connection, sql.c_str()); });
    }
    // The name of the statement when it has run before, and so is worth to be prepared; else null.
    const char* Prepared(const std::string& sql, int values) {
        const auto [known, is_new] = prepared.try_emplace(sql);
        if (is_new)
            return nullptr;
        if (known->second.empty()) {
            std::string name = "style_" + std::to_string(++names);
            Ask([&](PGconn* connection) {
                return PQsendPrepare(connection, name.c_str(), sql.c_str(), values, nullptr);
            });
            known->second = std::move(name);
        }
        return known->second.c_str();
    }

private:
    // In units of the patience: when the server breaks a statement off, and when it is not waited for any
    // more.
    static constexpr int Longest_Statement = 3, Longest_Wait = 4;

    // Null when there is nothing more.
    Result Answer() {
        const auto start = Clock::now();
        seconds next_look = patience;
        while (PQisBusy(handle.get())) {
            const bool heard = Wait_Until(start + next_look);
            if (heard && PQconsumeInput(handle.get()) != 1)
                Fail_With(nullptr);
            if (heard)
                continue;
            // It may be at work on something that takes long.
            if (next_look >= patience * Longest_Wait || !parameters.Server_Answers())
                Fail_Silent("the server did not answer in time");
            next_look += patience;
        }
        return {PQgetResult(handle.get()), PQclear};
    }
    // False when the time is over.
    bool Wait_Until(Clock::time_point end) {
        for (;;) {
            const int flushed = PQflush(handle.get());
            if (flushed < 0)
                Fail_With(nullptr);
            pollfd socket{PQsocket(handle.get()), POLLIN, 0};
            if (flushed > 0)
                socket.events |= POLLOUT;
            const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
            if (patience.count() > 0 && left <= 0)
                return false;
            if (automation::Is_Interrupted() && !committing)
                Fail_Silent("interrupted");
            const int ready = poll(&socket, 1, patience.count() > 0 ? static_cast<int>(left) : -1);
            if (ready > 0 && (socket.revents & ~POLLOUT) != 0)
                return true;
        }
    }

    [[noreturn]] void Fail(const std::string& what) const {
        throw Store_Error(Store_Error::Reason::Unusable, "The store " + Place.Name + ' ' + what);
    }
    std::string Unknown_Outcome() const {
        return committing ? "; whether the change was stored is not known" : "";
    }
    [[noreturn]] void Fail_Silent(const std::string& why) {
        is_silent = true;
        Fail("cannot be used: " + why + Unknown_Outcome() + "; try again when the server runs");
    }
    // Null: the client library's own complaint.
    [[noreturn]] void Fail_With(const PGresult* result) {
        const char* const code = result ? PQresultErrorField(result, PG_DIAG_SQLSTATE) : nullptr;
        const char* const primary = result ? PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
        const std::string state = code ? code : "";
        const std::string said = One_Line(primary ? primary : PQerrorMessage(handle.get()));
        while (Is_Alive())
            if (const Result rest = Answer(); !rest)
                break;
        if (!Is_Alive())
            Fail("cannot be used: " + said + Unknown_Outcome() + "; try again when the server runs");
        if (const std::string advice = Advice(state); !advice.empty())
            Fail("cannot be used: " + said + "; " + advice);
        Fail("refused it: " + said);
    }
    static std::string Advice(const std::string& state) {
        if (state == "42501") // insufficient privilege
            return "ask the store's administrator for the rights of an editor";
        if (state == "55P03" || state == "40P01" || state == "40001") // locks, deadlocks, serialisation
            return "another program is using it; try again";
        if (state == "57014") // cancelled
            return "the server runs, but took too long; try again when it has less to do";
        return "";
    }

    const seconds patience;
    const Parameters parameters;
    std::unique_ptr<PGconn, decltype(&PQfinish)> handle;
    bool committing = false; // when a failure comes: nobody knows what became of the change
    bool is_silent = false;
    std::map<std::string, std::string> prepared; // texts to names; empty for what has run once
    int names = 0;
};

// The client library wants numbers for the placeholders' names. Quoted text and casts (::) are left alone.
std::string Numbered(const std::string& sql) {
    const auto is_word = [](char each) {
        return std::isalnum(static_cast<unsigned char>(each)) != 0 || each == '_';
    };
    std::vector<std::string> names;
    std::string numbered;
    for (std::size_t at = 0; at < sql.size();) {
        std::size_t end = at + 1;
        if (sql[at] == '\'' || sql[at] == '"')
            end = std::min(sql.find(sql[at], end), sql.size() - 1) + 1;
        else if (sql.compare(at, 2, "::") == 0)
            end = at + 2;
        else if (sql[at] == ':' && end < sql.size() && is_word(sql[end])) {
            end = static_cast<std::size_t>(
                std::find_if_not(sql.begin() + static_cast<std::ptrdiff_t>(end), sql.end(), is_word) -
                sql.begin());
            const std::string name = sql.substr(at, end - at);
            const auto known = std::find(names.begin(), names.end(), name);
            numbered += '$' + std::to_string(known - names.begin() + 1);
            if (known == names.end())
                names.push_back(name);
            at = end;
            continue;
        }
        numbered.append(sql, at, end - at);
        at = end;
    }
    return numbered;
}

class Server_Cursor final : public Cursor {
public:
    Server_Cursor(Server_Connection& connection, const std::string& sql)
        : connection(connection), plain(sql), numbered(Numbered(sql)) {}

    void Run(const Values& values) override {
        result.reset();
        row = 0;
        result = values.empty() ? connection.Execute(plain) : With(values);
    }
    bool Next(UTF8_Row& columns) override {
        if (!result || row >= PQntuples(result.get()))
            return false;
        columns.resize(static_cast<std::size_t>(PQnfields(result.get())));
        for (int column = 0; column < PQnfields(result.get()); ++column) {
            auto& value = columns[static_cast<std::size_t>(column)];
            value.reset();
            if (PQgetisnull(result.get(), row, column) == 0)
                value.emplace(PQgetvalue(result.get(), row, column),
                              static_cast<std::size_t>(PQgetlength(result.get(), row, column)));
        }
        ++row;
        return true;
    }

private:
    Result With(const Values& values) {
        std::vector<std::string> keys; // the texts of numbers
        keys.reserve(values.size());
        std::vector<const char*> texts;
        for (const Value& value : values) {
            if (value.Key)
                keys.push_back(std::to_string(*value.Key));
            texts.push_back(value.Key ? keys.back().c_str() : value.Text ? value.Text->c_str() : nullptr);
        }
        const int count = static_cast<int>(texts.size());
        const char* const name = connection.Prepared(numbered, count);
        return connection.Ask([&](PGconn* handle) {
            return name
                       ? PQsendQueryPrepared(handle, name, count, texts.data(), nullptr, nullptr, Text_Format)
                       : PQsendQueryParams(handle, numbered.c_str(), count, nullptr, texts.data(), nullptr,
                                           nullptr, Text_Format);
        });
    }

    Server_Connection& connection;
    const std::string plain, numbered;
    Result result{nullptr, PQclear};
    int row = 0;
};

std::unique_ptr<Cursor> Server_Connection::Prepare(const std::string& sql) {
    return std::make_unique<Server_Cursor>(*this, sql);
}

} // namespace

std::unique_ptr<Connection> Open_Server(const Location& location) {
    return std::make_unique<Server_Connection>(location);
}

} // namespace stores
