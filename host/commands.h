// All commands of the program.
#pragma once

#include "options/subcommand.h"

namespace host {

Subcommands All_Commands();
std::vector<Group> Command_Groups();

} // namespace host
