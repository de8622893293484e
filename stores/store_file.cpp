#include "store_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "stores/store.h"

namespace stores {

namespace {

constexpr mode_t Own_File = S_IRUSR | S_IWUSR;
constexpr mode_t Own_Folder = S_IRWXU;

[[noreturn]] void Refuse(const Location& location, const std::string& what) {
    throw Store_Error(Store_Error::Reason::Unusable, "The store " + location.Name + " " + what);
}

std::string System_Text(int error) {
    return std::generic_category().message(error);
}

} // namespace

New_File::New_File(const Location& location) {
    try {
        const std::filesystem::path path(location.Target);
        Make_Folders(location, path.parent_path());
        Make_File(location, path);
    } catch (...) {
        Remove();
        throw;
    }
}

New_File::~New_File() {
    Remove();
}

void New_File::Make_Folders(const Location& location, const std::filesystem::path& folder) {
    std::error_code unknown;
    if (folder.empty() || std::filesystem::exists(folder, unknown))
        return;
    Make_Folders(location, folder.parent_path());
    if (mkdir(folder.c_str(), Own_Folder) == 0)
        made.push_back(folder);
    else if (errno != EEXIST)
        Refuse(location, "cannot be created: folder " + folder.string() + ": " + System_Text(errno) +
                             "; name a folder that you can write to");
}

void New_File::Make_File(const Location& location, const std::filesystem::path& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, Own_File);
    if (file >= 0) {
        close(file);
        made.push_back(path);
        made.push_back(path.string() + "-journal"); // stays when even the roll-back fails, on a full disk
    } else if (errno != EEXIST)
        Refuse(location, "cannot be created: " + System_Text(errno) +
                             "; name a file in a folder that you can write to");
}

void New_File::Remove() noexcept {
    // A folder that someone else has put something into meanwhile stays: remove() takes empty ones only.
    std::error_code ignored;
    for (auto entry = made.rbegin(); entry != made.rend(); ++entry)
        std::filesystem::remove(*entry, ignored);
    made.clear();
}

Pinned_File::Pinned_File(const Location& location)
    // A descriptor of the place alone: closing it does not drop the locks that another connection of this
    // process may hold on the same file.
    : descriptor(open(location.Target.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)) {
    if (descriptor < 0 && (errno == ENOENT || errno == ENOTDIR))
        throw Store_Error(Store_Error::Reason::Missing,
                          "The store " + location.Name +
                              " does not exist; create it with: style-editor store init --store " +
                              location.Name);
    if (descriptor < 0)
        Refuse(location,
               "cannot be opened: " + System_Text(errno) + "; check the rights of the file and its folders");
    struct stat status {};
    const bool known = fstat(descriptor, &status) == 0;
    if (known && S_ISREG(status.st_mode))
        return;
    close(descriptor);
    Refuse(location, known && S_ISLNK(status.st_mode)
                         ? "is a symbolic link, which is not followed; name the file itself"
                         : "is no file; name a database file");
}

Pinned_File::~Pinned_File() {
    close(descriptor);
}

std::string Pinned_File::Path() const {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

} // namespace stores
