// Reading a file as a whole. Thread-safe.
#pragma once

#include "shell/format_error.h"

namespace shell {

// All bytes of a file of at most 64 MiB. Failure: Format_Error that names the file.
std::string File_Bytes(const std::string& path);

} // namespace shell
