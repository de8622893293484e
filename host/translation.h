// The commands for translators. They throw Start_Error.
#pragma once

#include <ostream>

#include "host/command_line.h"

namespace host {

// Prints "FILE:LINE: text" for everything that is wrong with a string table: slots, place holders, numbers,
// texts that overflow their places, access keys. True when there is nothing.
bool Check_Strings(const Strings_Command& command, std::ostream& out);

// One picture of the dialog in the table's language.
void Picture_Strings(const Strings_Command& command, std::ostream& out);

} // namespace host
