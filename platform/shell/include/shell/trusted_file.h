// A file or a folder that nobody but root and this user can change or exchange.
//
// Every folder from the root on, every link on the way and what is opened belong to root or to this user, and
// nobody else may write them. A sticky folder such as /tmp may stand on the way, since nobody else can put
// something in the place of an entry that was checked; it may not be the folder that is opened or that the
// file is in, since a library looks there for others. Each step is opened before it is checked and the next
// one is taken from it, so that what was checked is what is read, and the path without links stays what it
// is.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <sys/stat.h>

namespace shell {

// One line that names the path and says what to do.
struct Trust_Error : std::runtime_error {
    explicit Trust_Error(const std::string& text, int error = 0) : std::runtime_error(text), Error(error) {}
    int Error; // of the system, such as ENOENT; 0 when the file may not be trusted
};

class Descriptor {
public:
    explicit Descriptor(int number = -1) : number(number) {}
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor other) noexcept;
    ~Descriptor();
    int Get() const { return number; }
    explicit operator bool() const { return number >= 0; }

private:
    int number;
};

// What the system says about an error, for the end of a message.
std::string System_Text(int error);

class Trusted_File {
public:
    enum class Sticky { On_The_Way, Anywhere };

    // An absolute path. Trust_Error.
    explicit Trusted_File(const std::string& path, Sticky sticky = Sticky::On_The_Way);
    // An entry of this folder.
    Trusted_File Entry(const std::string& name) const;

    int Get() const { return file.Get(); }           // for reading, or O_PATH of a folder
    const std::string& Path() const { return path; } // without links
    const struct stat& Status() const { return status; }
    bool Is_Folder() const { return S_ISDIR(status.st_mode); }
    bool Is_Regular() const { return S_ISREG(status.st_mode); }
    // All of it. Trust_Error when it is no file, is larger, or cannot be read.
    std::string Bytes(std::size_t most) const;

private:
    Trusted_File() = default;
    void Walk(std::string rest, Sticky sticky);
    void Enter_Root();
    void Enter(Descriptor next, std::string its_path);
    std::optional<std::string> Step(const std::string& name);

    Descriptor file;
    std::string path; // empty: the root
    struct stat status {};
};

} // namespace shell
