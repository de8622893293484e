// The commands for translators. They throw Start_Error.
#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "transcript/job.h"

namespace host {

// Prints "FILE:LINE: text" for everything that is wrong with a string table: slots, place holders, numbers,
// texts that overflow their places, access keys. True when there is nothing.
bool Check_Strings(const std::string& file, std::ostream& out);

// One picture of the dialog in a language of the table, its first unless one is given.
void Picture_Strings(const std::string& file, const std::string& picture, std::optional<Integer> language,
                     std::ostream& out);

} // namespace host
