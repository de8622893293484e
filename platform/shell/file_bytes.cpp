#include "shell/file_bytes.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "automation/interruption.h"

namespace shell {

namespace {

[[noreturn]] void Refuse_Unreadable(const std::string& path, int error) {
    throw Format_Error(
        0, "cannot be read: " + std::generic_category().message(error) + "; name a file that you can read",
        path);
}

class Open_File {
public:
    explicit Open_File(const std::string& path)
        : path(path), descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (descriptor < 0)
            Refuse_Unreadable(path, errno);
    }
    Open_File(const Open_File&) = delete;
    Open_File& operator=(const Open_File&) = delete;
    ~Open_File() { close(descriptor); }

    // False at the end of the file.
    bool Append_To(std::string& bytes) const {
        std::array<char, 65536> buffer;
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && (errno != EINTR || automation::Is_Interrupted()))
            Refuse_Unreadable(path, errno);
        if (count > 0)
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        return count != 0;
    }

private:
    const std::string path;
    const int descriptor;
};

} // namespace

std::string File_Bytes(const std::string& path, std::size_t most) {
    const Open_File file(path);
    std::string bytes;
    while (file.Append_To(bytes))
        if (bytes.size() > most)
            throw Format_Error(
                0, "is larger than " + std::to_string(most >> 20U) + " MiB; name a smaller file", path);
    return bytes;
}

} // namespace shell
