#include "trust.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace classes {

namespace {

std::optional<std::string> Distrust_One(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT)
            return std::nullopt;
        return path + " cannot be looked at: " + std::generic_category().message(errno);
    }
    if (status.st_uid != 0 && status.st_uid != geteuid())
        return path + " belongs to another user; it has to belong to root or to you";
    const unsigned mode = status.st_mode & 07777U;
    if ((mode & 022U) != 0) {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "%04o", mode);
        return path + " may be written by others (mode " + text.data() + "); run chmod go-w on it";
    }
    return std::nullopt;
}

std::string Folder_Of(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

std::string Real_Path(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : "";
}

} // namespace

std::optional<std::string> Distrust(const std::string& path) {
    if (auto problem = Distrust_One(Folder_Of(path)))
        return problem;
    return Distrust_One(path);
}

std::optional<std::string> Module_Distrust(const std::string& path) {
    if (path.empty() || path.front() != '/')
        return "the module \"" + path + "\" is not named by an absolute path";
    const std::string real = Real_Path(path);
    if (real.empty())
        return "the module " + path + " cannot be found: " + std::generic_category().message(errno);
    if (auto problem = Distrust(path))
        return problem;
    if (auto problem = Distrust(real))
        return problem;
    struct stat status {};
    if (stat(real.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return "the module " + path + " is not a file";
    return std::nullopt;
}

} // namespace classes
