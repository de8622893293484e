// The commands that look after the registered classes. They throw Start_Error.
#pragma once

#include <ostream>

#include "host/command_line.h"

namespace host {

// All modules, or none after the first that fails.
void Register(const Register_Command& command, std::ostream& out);

// False when a class that was asked for cannot be created.
bool List(const List_Command& command, std::ostream& out);

} // namespace host
