#include "class_folders.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/file.h>
#include <unistd.h>

#include "shell/trusted_file.h"

namespace classes {

using shell::Descriptor;
using shell::Format_Error;
using shell::System_Text;
using shell::Trust_Error;
using shell::Trusted_File;

namespace {

constexpr std::string_view Ending = ".classes";
constexpr const char* Unfinished = ".new";

[[noreturn]] void Refuse_Unwritable(const std::string& path, int error) {
    throw Registration_Error(path + " cannot be written: " + System_Text(error));
}

// What a name begins with, behind which the names go.
std::uint64_t Number_Of(std::string_view name) {
    std::uint64_t number = 0;
    std::from_chars(name.data(), name.data() + name.size(), number);
    return number;
}

bool Comes_First(const std::string& left, const std::string& right) {
    return std::pair(Number_Of(left), left) > std::pair(Number_Of(right), right);
}

std::vector<std::string> Names_In(const Trusted_File& folder) {
    const int listed = openat(folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(listed < 0 ? nullptr : fdopendir(listed), closedir);
    if (!entries)
        throw Trust_Error(folder.Path() + " cannot be read: " + System_Text(errno), errno);
    std::vector<std::string> names;
    while (const dirent* const entry = readdir(entries.get()))
        if (const std::string name = entry->d_name; name.ends_with(Ending) && !name.starts_with('.'))
            names.push_back(name);
    std::sort(names.begin(), names.end(), Comes_First);
    return names;
}

Manifest Read_Manifest(const Trusted_File& file) {
    Manifest manifest = Parse_Manifest(file.Bytes(Largest_Manifest));
    if (!manifest.Module.starts_with('/')) {
        const auto folder = std::filesystem::path(file.Path()).parent_path();
        manifest.Module = (folder / manifest.Module).lexically_normal().string();
    }
    return manifest;
}

Found_Manifest Read_Entry(const Trusted_File& folder, const std::string& name, Scope scope) {
    Found_Manifest found{folder.Path() + "/" + name, scope, {}, {}};
    try {
        found.Content = Read_Manifest(folder.Entry(name));
    } catch (const Trust_Error& error) {
        found.Problem = error.what();
    } catch (const Format_Error& error) {
        found.Problem = Format_Error(error.Line, error.Reason, found.Path).what();
    }
    return found;
}

void Read_Folder(const std::string& path, Scope scope, std::vector<Found_Manifest>& found) {
    if (path.empty())
        return;
    try {
        const Trusted_File folder(path);
        for (const std::string& name : Names_In(folder))
            found.push_back(Read_Entry(folder, name, scope));
    } catch (const Trust_Error& error) {
        if (error.Error != ENOENT)
            found.push_back({path, scope, {}, error.what()});
    }
}

// Also the folders above it, each in one that may be trusted.
Trusted_File Made_Folder(const std::filesystem::path& path, mode_t mode) {
    using Sticky = Trusted_File::Sticky;
    try {
        return Trusted_File(path, Sticky::Anywhere);
    } catch (const Trust_Error& error) {
        if (error.Error != ENOENT || !path.has_relative_path())
            throw;
    }
    const Trusted_File above = Made_Folder(path.parent_path(), mode);
    if (mkdirat(above.Get(), path.filename().c_str(), mode) != 0 && errno != EEXIST)
        Refuse_Unwritable(path, errno);
    return Trusted_File(path, Sticky::Anywhere);
}

// A scope's folder while it is changed by this process alone.
class Changed_Folder {
public:
    explicit Changed_Folder(Scope scope) try
        : folder((Made_Folder(Path_Of(scope), scope == Scope::User ? 0700 : 0755), Path_Of(scope))),
          mode(scope == Scope::User ? 0600 : 0644),
          lock(openat(folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (!lock || flock(lock.Get(), LOCK_EX) != 0)
            Refuse_Unwritable(folder.Path(), errno);
    } catch (const Trust_Error& error) {
        throw Registration_Error(std::string("the class folder is not changed: ") + error.what());
    }

    std::vector<std::string> Names() const { return Names_In(folder); }
    // Nothing when it is broken.
    std::optional<Manifest> Read(const std::string& name) const {
        auto found = Read_Entry(folder, name, Scope::User);
        return found.Problem.empty() ? std::optional(std::move(found.Content)) : std::nullopt;
    }
    std::vector<std::string> Names_Of(const std::string& module) const {
        auto names = Names();
        std::erase_if(names, [&](const std::string& name) {
            const auto manifest = Read(name);
            return !manifest || manifest->Module != module;
        });
        return names;
    }
    // Complete and on the disk before it gets its name.
    void Write(const std::string& name, std::string_view bytes) const {
        unlinkat(folder.Get(), Unfinished, 0); // of a run that was cut off
        const Descriptor file(
            openat(folder.Get(), Unfinished, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        const bool is_written =
            file && fchmod(file.Get(), mode) == 0 && Write_All(file.Get(), bytes) && fsync(file.Get()) == 0 &&
            renameat(folder.Get(), Unfinished, folder.Get(), name.c_str()) == 0 && fsync(lock.Get()) == 0;
        if (is_written)
            return;
        const int error = errno;
        unlinkat(folder.Get(), Unfinished, 0);
        Refuse_Unwritable(folder.Path() + "/" + name, error);
    }
    void Remove(const std::string& name) const {
        if (unlinkat(folder.Get(), name.c_str(), 0) != 0 || fsync(lock.Get()) != 0)
            Refuse_Unwritable(folder.Path() + "/" + name, errno);
    }

private:
    static std::string Path_Of(Scope scope) {
        std::string path = Class_Folder(scope);
        if (path.empty())
            throw Registration_Error("there is no home folder for your classes; set HOME");
        return path;
    }
    static bool Write_All(int file, std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count = write(file, bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR)
                return false;
            bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
        }
        return true;
    }

    const Trusted_File folder;
    const mode_t mode;
    const Descriptor lock;
};

// The module's file name, as far as every file system and shell can say it.
std::string Name_For(std::uint64_t number, const std::string& module) {
    constexpr std::size_t Longest = 100;
    std::string stem = std::filesystem::path(module).stem().string().substr(0, Longest);
    std::erase_if(stem, [](char byte) {
        return !(byte >= '0' && byte <= '9') && !(byte >= 'A' && byte <= 'Z') &&
               !(byte >= 'a' && byte <= 'z') && byte != '_';
    });
    return std::to_string(number) + "-" + stem + std::string(Ending);
}

} // namespace

std::vector<Found_Manifest> Read_Manifests() {
    std::vector<Found_Manifest> found;
    Read_Folder(Class_Folder(Scope::User), Scope::User, found);
    Read_Folder(Class_Folder(Scope::Machine), Scope::Machine, found);
    if (!Machine_Folder_From_Environment())
        Read_Folder(Platform_Folder() + "/style-node/classes.d", Scope::Machine, found);
    return found;
}

void Write_Manifest(Scope scope, const Manifest& manifest) {
    std::string text;
    try {
        text = Manifest_Text(manifest);
    } catch (const Format_Error& error) {
        throw Registration_Error("the module " + manifest.Module +
                                 " cannot be registered: its path or a class's name " + error.Reason +
                                 "; give it another name");
    }
    const Changed_Folder folder(scope);
    const auto old = folder.Names_Of(manifest.Module);
    const auto all = folder.Names();
    const bool is_first = !all.empty() && !old.empty() && all.front() == old.front();
    const std::string name =
        is_first ? old.front() : Name_For(all.empty() ? 1 : Number_Of(all.front()) + 1, manifest.Module);
    folder.Write(name, text);
    for (const std::string& other : old)
        if (other != name)
            folder.Remove(other);
}

int Remove_Manifests(Scope scope, const std::string& module) {
    std::error_code error;
    if (!std::filesystem::exists(Class_Folder(scope), error) && !error)
        return 0;
    const Changed_Folder folder(scope);
    std::size_t count = 0;
    for (const std::string& name : folder.Names_Of(module)) {
        count += folder.Read(name).value_or(Manifest()).Classes.size();
        folder.Remove(name);
    }
    return static_cast<int>(count);
}

} // namespace classes
