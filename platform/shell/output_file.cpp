#include "shell/output_file.h"

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

#include "automation/failure.h"
#include "automation/text.h"
#include "shell/file_system.h"

namespace shell {

using automation::Long;
using automation::String_View;
namespace run_time = automation::run_time;

namespace {

constexpr Long Largest_File_Number = 511;
constexpr mode_t Own_File = S_IRUSR | S_IWUSR;
// Without blocking: a pipe that has taken the place of the file meanwhile must not hold the caller.
constexpr int Append_Flags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

std::mutex table_lock;
std::map<Long, int> open_files; // the descriptor under each number that is open

[[noreturn]] void Raise_System_Error(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        automation::Raise(run_time::Path_Not_Found);
    case EACCES:
    case EPERM:
    case EROFS:
        automation::Raise(run_time::Permission_Denied);
    default:
        automation::Raise(run_time::Path_File_Access);
    }
}

void Require_Regular(const struct stat& status) {
    if (!S_ISREG(status.st_mode))
        automation::Raise(run_time::Path_File_Access);
}

// Opening a device or a pipe can have an effect by itself, so the place is looked at before; and again
// afterwards, since another process may have changed it in between.
int Open_Regular(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) == 0)
        Require_Regular(status);
    const int descriptor = open(path.c_str(), Append_Flags, Own_File);
    if (descriptor < 0)
        Raise_System_Error(errno);
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        return descriptor;
    close(descriptor);
    automation::Raise(run_time::Path_File_Access);
}

void Write_All(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            Raise_System_Error(errno);
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace

void Open_For_Append(Long file_number, String_View path) {
    if (file_number < 1 || file_number > Largest_File_Number || path.empty() || path.find(u'\0') != path.npos)
        automation::Raise(run_time::Bad_File_Number);
    const std::lock_guard guard(table_lock);
    if (open_files.contains(file_number))
        automation::Raise(run_time::File_Already_Open);
    const auto entry = open_files.emplace(file_number, -1).first;
    try {
        entry->second = Open_Regular(Native_Path(path));
    } catch (...) {
        open_files.erase(entry);
        throw;
    }
}

void Write_Quoted_Line(Long file_number, String_View text) {
    const std::lock_guard guard(table_lock);
    const auto found = open_files.find(file_number);
    if (found == open_files.end())
        automation::Raise(run_time::Bad_File_Number);
    Write_All(found->second, "\"" + automation::To_UTF8(text) + "\"\r\n");
}

void Close_File(Long file_number) {
    const std::lock_guard guard(table_lock);
    const auto found = open_files.find(file_number);
    if (found == open_files.end())
        return;
    const int descriptor = found->second;
    open_files.erase(found);
    if (close(descriptor) != 0 && errno != EINTR)
        automation::Raise(run_time::Path_File_Access);
}

} // namespace shell
