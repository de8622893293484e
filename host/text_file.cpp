#include "text_file.h"

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

} // namespace host
