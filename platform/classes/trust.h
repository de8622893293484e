// Whether a file may be trusted to be loaded or followed.
#pragma once

#include <optional>
#include <string>

namespace classes {

// Why a file, or the folder it is in, cannot be trusted: it belongs to somebody else than root or this user,
// or others may write it. Nothing for one that can be, or is not there.
std::optional<std::string> Distrust(const std::string& path);

// The same for a module's file, which has to be named by an absolute path and be a regular file.
std::optional<std::string> Module_Distrust(const std::string& path);

} // namespace classes
