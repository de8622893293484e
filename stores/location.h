// What a store's URL names. Pure functions, callable from any thread.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace stores {

struct Location {
    bool Is_File;        // SQLite; else PostgreSQL
    std::string Path;    // of the file
    std::string Name;    // as messages show it: scheme and path, or scheme, server and database
    std::string Address; // a URL that opens it and may be shown: without what is secret
    // For the server's client library, as it took the URL apart; the only place that holds a password.
    std::vector<std::pair<std::string, std::string>> Options;
};

// Store_Error when the text is no URL of a store. The message holds nothing that may be a password.
Location Locate(const std::string& url);

} // namespace stores
