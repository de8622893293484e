// The string tables that come with the program, a file language_N.strings for each language.
#pragma once

#include <optional>
#include <string>

#include "transcript/job.h"

namespace host {

// The table to load for a language; nothing for the one that is built in. Throws Start_Error, which names the
// languages that there are.
std::optional<std::string> Installed_Texts(Integer language);

} // namespace host
