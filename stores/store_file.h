// The file of an SQLite store: published whole with the narrowest rights, opened without following a link,
// and not where others could slip something under it. Every failure is a Store_Error. Callable from any
// thread.
#pragma once

#include <string>
#include <string_view>

#include "location.h"

namespace stores {

// Makes the file, mode 0600, with these bytes, and the folders it needs, mode 0700. It is there whole or not
// at all, and what was made goes again on a failure. Already_There when something has the name.
void Publish_File(const Location& location, std::string_view bytes);

// Holds a place in the file system that exists and is a regular file, so that what is opened through it
// is what was looked at, whatever happens to the path meanwhile. It lies in a folder where nobody else may
// make files, or in a sticky one, and what lies beside it is trusted.
class Pinned_File {
public:
    explicit Pinned_File(const Location& location);
    Pinned_File(const Pinned_File&) = delete;
    Pinned_File& operator=(const Pinned_File&) = delete;
    ~Pinned_File();

    // A path to it without blanks or quotes, whatever the real one holds; valid while this object lives.
    std::string Path() const;

private:
    void Check(const Location& location) const;

    int descriptor;
};

// Whether PATH-journal, PATH-wal or PATH-shm does not exist, or belongs to this user, root, or the owner of
// PATH.
bool Is_Trusted_Companion(const char* path) noexcept;

// What to do about a failure of the operating system.
const char* File_Advice(int error);

} // namespace stores
