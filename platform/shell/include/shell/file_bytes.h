// Reading a file as a whole. Thread-safe.
#pragma once

#include "shell/format_error.h"

namespace shell {

constexpr std::size_t Usual_Bound = std::size_t{64} << 20U;

// All bytes of a file of at most `most` bytes; nothing beyond is read. Failure: Format_Error that names the
// file.
std::string File_Bytes(const std::string& path, std::size_t most = Usual_Bound);

} // namespace shell
