// The commands for many nodes at once.
#pragma once

#include "options/subcommand.h"

namespace host {

std::unique_ptr<Subcommand> Make_Export_Command();
std::unique_ptr<Subcommand> Make_Apply_Command();

} // namespace host
