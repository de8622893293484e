#include "location.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <memory>
#include <string_view>

#include <libpq-fe.h>

#include "stores/store.h"

namespace stores {

namespace {

constexpr std::string_view File_Scheme = "sqlite:";
constexpr std::array<std::string_view, 2> Server_Schemes{"postgresql://", "postgres://"};

[[noreturn]] void Refuse(const std::string& message) {
    throw Store_Error(Store_Error::Reason::Unusable, message);
}

// A mistyped URL may hold a password, which has to be in front of an "@" or behind a "=".
[[noreturn]] void Refuse_Scheme(std::string url) {
    const bool is_path = url.find(':') == std::string::npos && url.find('/') != std::string::npos;
    if (is_path && url.find_first_of("@=") == std::string::npos)
        Refuse("The store \"" + url + "\" is not understood; write sqlite:" + url);
    if (url.find_first_of("@=") != std::string::npos)
        url = url.substr(0, url.find_first_of(":@=")) + "...";
    Refuse("The store \"" + url + "\" is not understood; write sqlite:PATH or postgresql://...");
}

[[noreturn]] void Refuse_Server() {
    Refuse(
        "The address of the store's server is not understood; write "
        "postgresql://USER@SERVER/DATABASE?OPTIONS, "
        "and inside a name, a password or an option %40 for @, %2F for /, %3A for :, %3F for ?, %25 for %");
}

// An unescaped "/", "@" or "?" in a password would make the client library take a part of it for the name of
// a server or a database, which messages show.
bool Is_Ambiguous(std::string_view rest) {
    const auto at = rest.find('@');
    if (at == std::string_view::npos)
        return false;
    const auto slash = rest.find('/');
    const auto query = rest.find('?');
    if (at > slash) // then it has to stand among the options
        return query > at || query < slash;
    const auto next = rest.find('@', at + 1);
    return query < at || (next != std::string_view::npos && rest.find('?', at) > next);
}

using Parsed_Options = std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)>;

Parsed_Options Parse(const std::string& url) {
    char* complaint = nullptr; // may quote the password
    Parsed_Options options(PQconninfoParse(url.c_str(), &complaint), PQconninfoFree);
    if (complaint)
        PQfreemem(complaint);
    if (!options)
        Refuse_Server();
    for (const auto* option = options.get(); option->keyword; ++option) {
        const std::string_view value = option->val ? option->val : "";
        if (option->keyword == std::string_view("port") &&
            value.find_first_not_of("0123456789,") != std::string_view::npos)
            Refuse_Server(); // rather a part of a password
    }
    return options;
}

std::string Escaped(std::string_view text) {
    constexpr std::string_view plain = "-._~,/:";
    constexpr const char* digits = "0123456789ABCDEF";
    std::string escaped;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        const bool is_word = code < 0x80 && std::isalnum(code) != 0;
        if (is_word || plain.find(character) != std::string_view::npos)
            escaped += character;
        else
            escaped += std::string("%") + digits[code >> 4U] + digits[code & 15U];
    }
    return escaped;
}

// The value, taken out of the options that are still to be written; empty when it is not among them.
std::string Taken(std::vector<std::pair<std::string, std::string>>& options, std::string_view keyword) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const auto& option) { return option.first == keyword; });
    if (found == options.end())
        return {};
    std::string value = std::move(found->second);
    options.erase(found);
    return value;
}

// A folder of sockets cannot stand in front, an address with colons needs brackets.
std::string Server_Of(std::vector<std::pair<std::string, std::string>>& shown) {
    const auto host = std::find_if(shown.begin(), shown.end(), [](const auto& option) {
        return option.first == "host" && option.second.find('/') == std::string::npos;
    });
    std::string server = host == shown.end() ? "" : Escaped(Taken(shown, "host"));
    if (server.find(':') != std::string::npos)
        server = '[' + server + ']';
    if (const std::string port = Taken(shown, "port"); !port.empty())
        server += ':' + port;
    return server;
}

Location Server(const std::string& url) {
    Location location{false, {}, {}, {}, {}};
    std::vector<std::pair<std::string, std::string>> shown;
    const auto options = Parse(url);
    for (const auto* option = options.get(); option->keyword; ++option) {
        if (!option->val)
            continue;
        location.Options.emplace_back(option->keyword, option->val);
        const bool is_secret = std::strchr(option->dispchar, '*') != nullptr;
        if (!is_secret)
            shown.push_back(location.Options.back());
    }
    const std::string user = Escaped(Taken(shown, "user"));
    const std::string place = Server_Of(shown) + '/' + Escaped(Taken(shown, "dbname"));
    location.Name = "postgresql://" + place;
    location.Address = "postgresql://" + user + (user.empty() ? "" : "@") + place;
    char separator = '?';
    for (const auto& [keyword, value] : shown)
        location.Address += std::exchange(separator, '&') + keyword + '=' + Escaped(value);
    return location;
}

} // namespace

Location Locate(const std::string& url) {
    if (url.starts_with(File_Scheme) && url.size() > File_Scheme.size())
        return {true, url.substr(File_Scheme.size()), url, url, {}};
    for (const std::string_view scheme : Server_Schemes)
        if (url.starts_with(scheme)) {
            if (Is_Ambiguous(std::string_view(url).substr(scheme.size())) ||
                url.find('\0') != std::string::npos)
                Refuse_Server();
            return Server(url);
        }
    Refuse_Scheme(url);
}

} // namespace stores
