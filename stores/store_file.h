// The file of an SQLite store: made with the narrowest rights, opened without following a link.
// Every failure is a Store_Error. Belongs to one thread.
#pragma once

#include <filesystem>
#include <vector>

#include "location.h"

namespace stores {

// Makes the file, mode 0600, and the folders it needs, mode 0700. What it made is removed again on
// destruction unless Keep was called. A file that exists is left as it is.
class New_File {
public:
    explicit New_File(const Location& location);
    New_File(const New_File&) = delete;
    New_File& operator=(const New_File&) = delete;
    ~New_File();

    void Keep() noexcept { made.clear(); }

private:
    void Make_Folders(const Location& location, const std::filesystem::path& folder);
    void Make_File(const Location& location, const std::filesystem::path& path);
    void Remove() noexcept;

    std::vector<std::filesystem::path> made;
};

// Holds a place in the file system that exists and is a regular file, so that what is opened through it
// is what was looked at, whatever happens to the path meanwhile.
class Pinned_File {
public:
    explicit Pinned_File(const Location& location);
    Pinned_File(const Pinned_File&) = delete;
    Pinned_File& operator=(const Pinned_File&) = delete;
    ~Pinned_File();

    // A path to it without blanks or quotes, whatever the real one holds; valid while this object lives.
    std::string Path() const;

private:
    int descriptor;
};

} // namespace stores
