// The commands that look after the registered classes.
#pragma once

#include "options/subcommand.h"

namespace host {

std::unique_ptr<Subcommand> Make_Register_Command();
std::unique_ptr<Subcommand> Make_Unregister_Command();
std::unique_ptr<Subcommand> Make_List_Command();

} // namespace host
