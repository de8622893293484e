// What is wrong with a text file that a person edits: a string table, a registry hive.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace shell {

// what() is one line: "FILE, line N: reason", without the parts that are not known.
class Format_Error : public std::runtime_error {
public:
    // `line` counts from 1; 0 is the file as a whole. `file` is empty for a text that comes from no file.
    Format_Error(std::size_t line, const std::string& reason, const std::string& file = {});

    std::size_t Line;
    std::string Reason;
};

} // namespace shell
