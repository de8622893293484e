// What a store's URL names. Pure functions, callable from any thread.
#pragma once

#include <string>

namespace stores {

struct Location {
    bool Is_File;       // SQLite; else PostgreSQL
    std::string Target; // the file's path, or the URL for the server's client library
    std::string Name;   // the URL as error messages show it: without a password
};

// Store_Error when the text is no URL of a store.
Location Locate(const std::string& url);

} // namespace stores
