#include "text_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "automation/text.h"
#include "host/errors.h"

namespace host {

std::string Read_File(const std::string& path) {
    std::error_code ignored;
    std::ifstream file;
    // A folder opens like a file and then gives nothing.
    if (!std::filesystem::is_directory(path, ignored))
        file.open(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad())
        throw Start_Error("the file " + path + " cannot be read; check its name and its rights");
    return bytes;
}

automation::String Read_Text_File(const std::string& path) {
    auto text = automation::From_UTF8(Read_File(path));
    if (!text)
        throw Start_Error("the file " + path + " is not UTF-8; convert it");
    return std::move(*text);
}

void Write_New_File(const std::string& path, std::string_view bytes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0)
        throw Start_Error(errno == EEXIST
                              ? "the file " + path + " exists already; remove it or name another one"
                              : "the file " + path + " cannot be made; check its folder and your rights");
    bool written = true;
    for (std::string_view rest = bytes; written && !rest.empty();) {
        const ssize_t count = ::write(file, rest.data(), rest.size());
        written = count > 0 || (count < 0 && errno == EINTR);
        rest.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    written = written && ::fsync(file) == 0;
    if (::close(file) != 0 || !written) {
        (void)::unlink(path.c_str());
        throw Start_Error("the file " + path + " could not be written; make room on the disk");
    }
}

} // namespace host
