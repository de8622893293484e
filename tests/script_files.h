// The editing scripts that the tests run, and their transcripts.
#pragma once

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "temporary_folder.h"

namespace script_files {

inline const std::string Scripts = SCRIPTS;

inline std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// What stands behind "# NAME: " in the script.
inline std::string Directive(const std::string& script, const std::string& name) {
    const std::string mark = "# " + name + ": ";
    for (const std::string& line : Lines(script))
        if (line.rfind(mark, 0) == 0)
            return line.substr(mark.size());
    return {};
}

// The time of a change, the second argument, is the only text that differs from run to run.
inline std::string Without_Time(std::string line) {
    const std::string mark = "\"Update_Node_Entry\",\"arguments\":[\"";
    const auto label = line.find(mark);
    if (label == std::string::npos)
        return line;
    const auto time = line.find("\",\"", label + mark.size()) + 3;
    return line.replace(time, line.find('"', time) - time, "<now>");
}

inline std::vector<std::string> Comparable(const std::string& transcript) {
    std::vector<std::string> lines = Lines(transcript);
    std::transform(lines.begin(), lines.end(), lines.begin(), Without_Time);
    return lines;
}

inline std::vector<std::string> Script_Names() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Scripts))
        if (entry.path().extension() == ".script")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace script_files
