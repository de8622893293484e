// The commands that run the editor.
#pragma once

#include "options/subcommand.h"

namespace host {

std::unique_ptr<Subcommand> Make_Edit_Command();
std::unique_ptr<Subcommand> Make_Play_Command();

} // namespace host
