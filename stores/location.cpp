#include "location.h"

#include <array>
#include <string_view>

#include "stores/store.h"

namespace stores {

namespace {

constexpr std::string_view File_Scheme = "sqlite:";
constexpr std::array<std::string_view, 2> Server_Schemes{"postgresql://", "postgres://"};

// User, password and options stay out of messages: only server and database are shown.
std::string Server_Name(std::string_view url, std::size_t scheme_length) {
    std::string_view rest = url.substr(scheme_length);
    if (const auto at = rest.rfind('@'); at != std::string_view::npos)
        rest.remove_prefix(at + 1);
    return std::string(url.substr(0, scheme_length)).append(rest.substr(0, rest.find('?')));
}

// The passwords before the host and among the options.
std::vector<std::string> Secrets_In(std::string_view url, std::size_t scheme_length) {
    std::vector<std::string> secrets;
    const std::string_view rest = url.substr(scheme_length);
    const auto colon = rest.find(':');
    const auto at = rest.rfind('@');
    if (colon < at && at != std::string_view::npos)
        secrets.emplace_back(rest.substr(colon + 1, at - colon - 1));
    constexpr std::string_view option = "password=";
    for (auto start = url.find(option); start != std::string_view::npos; start = url.find(option, start)) {
        start += option.size();
        secrets.emplace_back(url.substr(start, url.find('&', start) - start));
    }
    return secrets;
}

[[noreturn]] void Refuse(const std::string& url) {
    throw Store_Error(Store_Error::Reason::Unusable,
                      "The store \"" + url + "\" is not understood; write sqlite:PATH or postgresql://...");
}

} // namespace

Location Locate(const std::string& url) {
    if (url.starts_with(File_Scheme) && url.size() > File_Scheme.size())
        return {true, url.substr(File_Scheme.size()), url, {}};
    for (const std::string_view scheme : Server_Schemes)
        if (url.starts_with(scheme))
            return {false, url, Server_Name(url, scheme.size()), Secrets_In(url, scheme.size())};
    Refuse(url);
}

} // namespace stores
