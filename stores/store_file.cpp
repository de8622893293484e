#include "store_file.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "stores/store.h"

namespace stores {

namespace {

constexpr mode_t Own_File = S_IRUSR | S_IWUSR;
constexpr mode_t Own_Folder = S_IRWXU;

// SQLite knows no longer path, and makes a journal beside the file.
constexpr std::size_t Longest_Path = 512;
constexpr std::string_view Longest_Ending = "-journal";

[[noreturn]] void Refuse(const Location& location, const std::string& what) {
    throw Store_Error(Store_Error::Reason::Unusable, "The store " + location.Name + " " + what);
}
[[noreturn]] void Refuse(const Location& location, const std::string& what, int error) {
    Refuse(location, what + ": " + std::generic_category().message(error) + "; " + File_Advice(error));
}

std::filesystem::path Folder_Of(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder;
}

void Check_Lengths(const Location& location) {
    const std::filesystem::path path(location.Path);
    std::error_code unknown;
    const auto whole = std::filesystem::weakly_canonical(path, unknown);
    if (path.filename().native().size() + Longest_Ending.size() > NAME_MAX)
        Refuse(location, "has a name that is too long for its journal; take at most " +
                             std::to_string(NAME_MAX - Longest_Ending.size()) + " bytes");
    if ((unknown ? path : whole).native().size() + Longest_Ending.size() > Longest_Path)
        Refuse(location, "has a path that is too long for SQLite; take at most " +
                             std::to_string(Longest_Path - Longest_Ending.size()) + " bytes");
}

// The folders that had to be made; they go again unless they are kept.
class New_Folders {
public:
    explicit New_Folders(const Location& location) { Make(location, Folder_Of(location.Path)); }
    New_Folders(const New_Folders&) = delete;
    New_Folders& operator=(const New_Folders&) = delete;
    ~New_Folders() {
        for (auto folder = made.rbegin(); folder != made.rend(); ++folder)
            rmdir(folder->c_str()); // not one that someone else has put something into meanwhile
    }
    void Keep() noexcept { made.clear(); }

private:
    void Make(const Location& location, const std::filesystem::path& folder) {
        std::error_code unknown;
        if (folder.empty() || std::filesystem::exists(folder, unknown))
            return;
        Make(location, folder.parent_path());
        made.reserve(made.size() + 1);
        if (mkdir(folder.c_str(), Own_Folder) == 0)
            made.push_back(folder);
        else if (errno != EEXIST)
            Refuse(location, "cannot be created: folder " + folder.string(), errno);
    }

    std::vector<std::filesystem::path> made;
};

// A file without a name where the file system has such, so that nothing of it can be left behind.
class Unpublished_File {
public:
    explicit Unpublished_File(const std::filesystem::path& folder)
        : descriptor(open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, Own_File)) {
        if (descriptor >= 0 || (errno != EOPNOTSUPP && errno != EISDIR))
            return;
        name = folder / ".style-store.XXXXXX";
        descriptor = mkostemp(name.data(), O_CLOEXEC);
    }
    Unpublished_File(const Unpublished_File&) = delete;
    Unpublished_File& operator=(const Unpublished_File&) = delete;
    ~Unpublished_File() {
        if (descriptor >= 0)
            close(descriptor);
        if (descriptor >= 0 && !name.empty())
            unlink(name.c_str());
    }

    // These answer an error number, 0 for none.
    int Write(std::string_view bytes) const {
        while (descriptor >= 0 && !bytes.empty()) {
            const ssize_t count = write(descriptor, bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR)
                return errno;
            bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
        }
        return descriptor >= 0 && fsync(descriptor) == 0 ? 0 : errno;
    }
    int Publish(const std::string& path) const {
        const std::string held = "/proc/self/fd/" + std::to_string(descriptor);
        const char* const from = name.empty() ? held.c_str() : name.c_str();
        return linkat(AT_FDCWD, from, AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
    }

private:
    std::string name;
    int descriptor;
};

int Sync_Folder(const std::filesystem::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int error = descriptor >= 0 && fsync(descriptor) == 0 ? 0 : errno;
    if (descriptor >= 0)
        close(descriptor);
    return error == EACCES || error == EINVAL ? 0 : error; // a folder that cannot be read, or synced
}

// 0, or why it could not be published.
int Publish_Here(const Location& location, std::string_view bytes) {
    const auto folder = Folder_Of(location.Path);
    const Unpublished_File file(folder);
    int error = file.Write(bytes);
    if (error == 0)
        error = file.Publish(location.Path);
    return error == 0 ? Sync_Folder(folder) : error;
}

} // namespace

const char* File_Advice(int error) {
    switch (error) {
    case EMFILE:
    case ENFILE:
        return "close files or programs, or raise the limit of open files";
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return "make room on the disk";
    case ENAMETOOLONG:
        return "take a shorter name";
    case EACCES:
    case EPERM:
    case EROFS:
        return "check the rights of the file and its folder, or name one that you can write to";
    case EIO:
        return "check the disk";
    default:
        return "check the name of the file and its folders";
    }
}

void Publish_File(const Location& location, std::string_view bytes) {
    Check_Lengths(location);
    constexpr int attempts = 5; // another program that failed may take the folders away that it had made
    for (int attempt = 1;; ++attempt) {
        New_Folders folders(location);
        const int error = Publish_Here(location, bytes);
        if (error == 0)
            return folders.Keep();
        if (error == EEXIST)
            throw Store_Error(Store_Error::Reason::Already_There,
                              "The store " + location.Name + " exists already");
        if (error != ENOENT || attempt == attempts)
            Refuse(location, "cannot be created", error);
    }
}

Pinned_File::Pinned_File(const Location& location)
    // A descriptor of the place alone: closing it does not drop the locks that another connection of this
    // process may hold on the same file.
    : descriptor(open(location.Path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)) {
    if (descriptor < 0 && (errno == ENOENT || errno == ENOTDIR))
        throw Store_Error(Store_Error::Reason::Missing,
                          "The store " + location.Name +
                              " does not exist; create it with: style-editor store init --store " +
                              location.Address);
    if (descriptor < 0)
        Refuse(location, "cannot be opened", errno);
    try {
        Check(location);
    } catch (...) {
        close(descriptor);
        throw;
    }
}

void Pinned_File::Check(const Location& location) const {
    struct stat file {
    }, folder{};
    if (fstat(descriptor, &file) != 0)
        Refuse(location, "cannot be opened", errno);
    if (S_ISLNK(file.st_mode))
        Refuse(location, "is a symbolic link, which is not followed; name the file itself");
    if (!S_ISREG(file.st_mode))
        Refuse(location, "is no file; name a database file");
    Check_Lengths(location);
    const auto path = Folder_Of(location.Path);
    if (stat(path.c_str(), &folder) != 0)
        Refuse(location, "cannot be opened", errno);
    if ((folder.st_mode & (S_IWGRP | S_IWOTH)) != 0 && (folder.st_mode & S_ISVTX) == 0)
        Refuse(location,
               "lies in a folder where others may make files, and so could change it; take their right with: "
               "chmod go-w " +
                   path.string());
    for (const char* const ending : {"-journal", "-wal", "-shm"})
        if (const std::string companion = location.Path + ending; !Is_Trusted_Companion(companion.c_str()))
            Refuse(location, "has a file beside it that belongs to someone else and could change it: " +
                                 companion + "; remove that file, or keep the store in a folder of your own");
}

Pinned_File::~Pinned_File() {
    close(descriptor);
}

std::string Pinned_File::Path() const {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

bool Is_Trusted_Companion(const char* path) noexcept {
    struct stat companion {
    }, file{};
    if (lstat(path, &companion) != 0)
        return errno == ENOENT;
    if (!S_ISREG(companion.st_mode))
        return false;
    if (companion.st_uid == geteuid() || companion.st_uid == 0)
        return true;
    std::array<char, PATH_MAX> base{};
    const char* const ending = std::strrchr(path, '-');
    const auto length = ending ? static_cast<std::size_t>(ending - path) : base.size();
    if (length >= base.size())
        return false;
    std::memcpy(base.data(), path, length);
    return lstat(base.data(), &file) == 0 && file.st_uid == companion.st_uid;
}

} // namespace stores
