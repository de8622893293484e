#include "process/text_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "automation/interruption.h"
#include "process/errors.h"
#include "shell/file_bytes.h"

namespace host {

namespace {

constexpr std::size_t Largest_Text_File = std::size_t{256} << 20U;

std::string Read_File(const std::string& path, std::size_t most) try {
    return shell::File_Bytes(path, most);
} catch (const shell::Format_Error& error) {
    throw Start_Error(error.what());
}

// 0, or an error number.
int Write_All(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && (errno != EINTR || automation::Is_Interrupted()))
            return errno;
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return ::fsync(file) == 0 || errno == EINVAL ? 0 : errno; // a pipe cannot be synced
}

int Sync_Folder_Of(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    const int file = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int error = file < 0 || ::fsync(file) == 0 ? 0 : errno; // one that cannot be read cannot be synced
    if (file >= 0)
        ::close(file);
    return error == EINVAL ? 0 : error;
}

} // namespace

std::string Read_Input(const std::string& path, std::istream& standard_input) {
    if (path != "-")
        return Read_File(path, shell::Usual_Bound);
    std::string bytes;
    std::array<char, 65536> part{};
    while (const auto count = standard_input.rdbuf()->sgetn(part.data(), part.size())) {
        bytes.append(part.data(), static_cast<std::size_t>(count));
        if (bytes.size() > shell::Usual_Bound)
            throw Start_Error("standard input is larger than " + std::to_string(shell::Usual_Bound >> 20U) +
                              " MiB; divide it");
    }
    return bytes;
}

automation::String Read_Text_File(const std::string& path) {
    auto text = automation::From_UTF8(Read_File(path, Largest_Text_File));
    if (!text)
        throw Start_Error("the file " + path + " is not UTF-8; convert it");
    return std::move(*text);
}

void Write_New_File(const std::string& path, std::string_view bytes) {
    const auto refuse = [&](const std::string& what, int error, const std::string& advice) {
        throw Start_Error("the file " + path + " " + what + ": " + std::generic_category().message(error) +
                          "; " + advice);
    };
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0 && errno == EEXIST)
        throw Start_Error("the file " + path + " exists already; remove it or name another one");
    if (file < 0)
        refuse("cannot be made", errno, "check its folder and your rights");
    int error = Write_All(file, bytes);
    if (::close(file) != 0 && error == 0)
        error = errno;
    if (error == 0)
        error = Sync_Folder_Of(path);
    if (error == 0)
        return;
    (void)::unlink(path.c_str());
    refuse("could not be written", error, "make room on the disk");
}

} // namespace host
