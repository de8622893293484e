// The commands for translators.
#pragma once

#include "options/subcommand.h"

namespace host {

std::unique_ptr<Subcommand> Make_Check_Command();
std::unique_ptr<Subcommand> Make_Picture_Command();

} // namespace host
