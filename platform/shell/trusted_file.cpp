#include "shell/trusted_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace shell {

namespace {

constexpr int Most_Links = 40;
constexpr mode_t Writable_By_Others = S_IWGRP | S_IWOTH;

[[noreturn]] void Refuse_Missing(const std::string& path, int error) {
    throw Trust_Error(
        path + (error == ENOENT ? " cannot be found: " : " cannot be opened: ") + System_Text(error), error);
}

[[noreturn]] void Refuse_Writable(const std::string& path, mode_t mode) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "%04o", mode & 07777U);
    throw Trust_Error(path + " may be written by others (mode " + text.data() + "); run chmod go-w on it");
}

void Check_Owner(const std::string& path, const struct stat& status) {
    if (status.st_uid != 0 && status.st_uid != geteuid())
        throw Trust_Error(path + " belongs to another user; it has to belong to root or to you");
}

void Check(const std::string& path, const struct stat& status) {
    Check_Owner(path, status);
    const bool is_sticky = S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
    if ((status.st_mode & Writable_By_Others) != 0 && !is_sticky)
        Refuse_Writable(path, status.st_mode);
}

std::string Target_Of(const Descriptor& link, const std::string& path) {
    std::array<char, PATH_MAX> target;
    const ssize_t size = readlinkat(link.Get(), "", target.data(), target.size());
    if (size <= 0 || static_cast<std::size_t>(size) == target.size())
        Refuse_Missing(path, size < 0 ? errno : ENAMETOOLONG);
    return {target.data(), static_cast<std::size_t>(size)};
}

// Takes the first name of a path, empty at its end.
std::string Take_Name(std::string& rest) {
    rest.erase(0, std::min(rest.find_first_not_of('/'), rest.size()));
    std::string name = rest.substr(0, rest.find('/'));
    rest.erase(0, name.size());
    return name;
}

// Some of its links are to what this process has open, such as a pipe, and lead nowhere by their texts.
bool Is_Of_The_Process(const Descriptor& folder) {
    struct statfs system {};
    return fstatfs(folder.Get(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

} // namespace

std::string System_Text(int error) {
    return std::generic_category().message(error);
}

Descriptor::Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}

Descriptor& Descriptor::operator=(Descriptor other) noexcept {
    std::swap(number, other.number);
    return *this;
}

Descriptor::~Descriptor() {
    if (number >= 0)
        close(number);
}

Trusted_File::Trusted_File(const std::string& path, Sticky sticky) {
    if (!path.starts_with('/'))
        throw Trust_Error("\"" + path + "\" is no absolute path");
    Walk(path, sticky);
}

Trusted_File Trusted_File::Entry(const std::string& name) const {
    Trusted_File entry;
    entry.Enter(Descriptor(fcntl(file.Get(), F_DUPFD_CLOEXEC, 0)), path);
    entry.Walk(name, Sticky::On_The_Way);
    return entry;
}

void Trusted_File::Enter(Descriptor next, std::string its_path) {
    status = {};
    if (!next || fstat(next.Get(), &status) != 0)
        Refuse_Missing(its_path, errno);
    file = std::move(next);
    path = std::move(its_path);
}

void Trusted_File::Enter_Root() {
    Enter(Descriptor(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)), "");
}

void Trusted_File::Walk(std::string rest, Sticky sticky) {
    const std::string asked = rest.starts_with('/') ? rest : path + "/" + rest;
    if (rest.starts_with('/'))
        Enter_Root();
    struct stat folder = status; // that the end of the path is in
    int links = 0;
    for (std::string name; !(name = Take_Name(rest)).empty();) {
        if (!Is_Folder())
            throw Trust_Error(path + " is not a folder", ENOTDIR);
        folder = status;
        const auto target = Step(name);
        if (!target)
            continue;
        if (++links > Most_Links)
            throw Trust_Error(asked + " has too many symbolic links", ELOOP);
        rest.insert(0, *target + "/");
        if (rest.starts_with('/'))
            Enter_Root();
    }
    const mode_t mode = Is_Folder() ? status.st_mode : folder.st_mode;
    if (sticky == Sticky::On_The_Way && (mode & Writable_By_Others) != 0)
        Refuse_Writable(Is_Folder() ? path : path.substr(0, path.rfind('/')), mode);
}

// Goes to that entry of the folder, or answers where a link leads.
std::optional<std::string> Trusted_File::Step(const std::string& name) {
    if (name == "." || name == "..") {
        Enter(Descriptor(openat(file.Get(), name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
              name == "." ? path : path.substr(0, std::min(path.rfind('/'), path.size())));
        return std::nullopt;
    }
    Trusted_File next;
    const std::string its_path = path + "/" + name;
    next.Enter(Descriptor(openat(file.Get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)), its_path);
    const bool is_link = S_ISLNK(next.status.st_mode);
    if (is_link) {
        Check_Owner(its_path, next.status);
        std::string target = Target_Of(next.file, its_path);
        if (!Is_Of_The_Process(file) || target.starts_with('/'))
            return target;
    }
    if (!next.Is_Folder()) // a pipe without a writer must not hold the caller
        next.Enter(
            Descriptor(openat(file.Get(), name.c_str(),
                              O_RDONLY | O_NOCTTY | O_CLOEXEC | (is_link ? 0 : O_NONBLOCK | O_NOFOLLOW))),
            its_path);
    Check(its_path, next.status);
    *this = std::move(next);
    return std::nullopt;
}

std::string Trusted_File::Bytes(std::size_t most) const {
    if (Is_Folder())
        throw Trust_Error(path + " is not a file", EISDIR);
    std::string bytes;
    std::array<char, 65536> buffer;
    for (ssize_t count; (count = read(file.Get(), buffer.data(), buffer.size())) != 0;) {
        if (count < 0 && errno != EINTR)
            throw Trust_Error(path + " cannot be read: " + System_Text(errno), errno);
        bytes.append(buffer.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
        if (bytes.size() > most)
            throw Trust_Error(path + " is larger than " + std::to_string(most >> 10U) + " KiB");
    }
    return bytes;
}

} // namespace shell
