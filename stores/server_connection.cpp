#include "server_connection.h"

#include <charconv>
#include <dlfcn.h>

#include <soci/postgresql/soci-postgresql.h>

#include "stores/store.h"

namespace stores {

namespace {

constexpr std::string_view Timeout = "connect_timeout=";

// The library is named in full so that the system's loader looks for it: SOCI's own search begins in the
// current folder. It stays loaded.
void* Backend(const Location& location) {
    static void* const library = dlopen("libsoci_postgresql.so.4.0", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library)
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + location.Name +
                              " needs SOCI's PostgreSQL backend; install the package libsoci-postgresql4.0");
    return library;
}

template <typename Function>
Function* Found(void* library, const char* name) {
    return reinterpret_cast<Function*>(dlsym(library, name));
}

// Of an open session.
PGconn* Connection(soci::session& session) {
    return static_cast<soci::postgresql_session_backend*>(session.get_backend())->conn_;
}

std::string::size_type Find_Option(const std::string& url, std::string_view option) {
    for (auto at = url.find('?'); at != std::string::npos; at = url.find('&', at + 1))
        if (url.compare(at + 1, option.size(), option) == 0)
            return at + 1 + option.size();
    return std::string::npos;
}

// Of an option that is given twice the last counts: the encoding is ours whatever the URL says.
std::string With_Our_Options(std::string url, std::chrono::seconds patience) {
    char separator = url.find('?') == std::string::npos ? '?' : '&';
    const auto add = [&](const std::string& option) { url += std::exchange(separator, '&') + option; };
    if (Find_Option(url, "application_name=") == std::string::npos)
        add("application_name=style-editor");
    if (Find_Option(url, Timeout) == std::string::npos)
        add(std::string(Timeout) + std::to_string(patience.count()));
    add("client_encoding=UTF8");
    return url;
}

} // namespace

std::chrono::seconds Patience_For(const Location& location) {
    constexpr int usual = 10;
    const auto at = Find_Option(location.Target, Timeout);
    if (at == std::string::npos)
        return std::chrono::seconds(usual);
    int seconds = usual; // what is no number is the client library's to refuse
    std::from_chars(location.Target.data() + at, location.Target.data() + location.Target.size(), seconds);
    return std::chrono::seconds(std::max(seconds, 0));
}

void Open_Server(soci::session& session, const Location& location) {
    const auto patience = Patience_For(location);
    using Factory = const soci::backend_factory*();
    const auto factory = Found<Factory>(Backend(location), "factory_postgresql");
    session.open(*factory(), With_Our_Options(location.Target, patience));
    const auto hear = Found<decltype(PQsetNoticeProcessor)>(Backend(location), "PQsetNoticeProcessor");
    hear(
        Connection(session), [](void*, const char*) {}, nullptr);
    session << "SET lock_timeout = " + std::to_string(patience.count() * 500);
}

bool Is_Connected(soci::session& session, const Location& location) {
    // SOCI's own question goes to the server, and waits.
    const auto* backend = static_cast<soci::postgresql_session_backend*>(session.get_backend());
    return backend &&
           Found<decltype(PQstatus)>(Backend(location), "PQstatus")(backend->conn_) == CONNECTION_OK;
}

int Socket_Of(soci::session& session, const Location& location) {
    return Found<decltype(PQsocket)>(Backend(location), "PQsocket")(Connection(session));
}

} // namespace stores
