#include "shell/format_error.h"

namespace shell {

namespace {

std::string Message(std::size_t line, const std::string& reason, const std::string& file) {
    const std::string place = line == 0 ? "" : "line " + std::to_string(line);
    const std::string separator = file.empty() || place.empty() ? "" : ", ";
    return file.empty() && place.empty() ? reason : file + separator + place + ": " + reason;
}

} // namespace

Format_Error::Format_Error(std::size_t line, const std::string& reason, const std::string& file)
    : std::runtime_error(Message(line, reason, file)), Line(line), Reason(reason) {}

} // namespace shell
