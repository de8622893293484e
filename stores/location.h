// What a store's URL names. Pure functions, callable from any thread.
#pragma once

#include <string>
#include <vector>

namespace stores {

struct Location {
    bool Is_File;                       // SQLite; else PostgreSQL
    std::string Target;                 // the file's path, or the URL for the server's client library
    std::string Name;                   // the URL as error messages show it: without a password
    std::vector<std::string> Secrets{}; // what no message may hold, though the client library may say it
};

// Store_Error when the text is no URL of a store.
Location Locate(const std::string& url);

} // namespace stores
