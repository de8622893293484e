// The commands that look into a store and after it.
#pragma once

#include "options/subcommand.h"

namespace host {

std::unique_ptr<Subcommand> Make_Init_Command();
std::unique_ptr<Subcommand> Make_Find_Command();
std::unique_ptr<Subcommand> Make_Show_Command();
std::unique_ptr<Subcommand> Make_Revert_Command();
std::unique_ptr<Subcommand> Make_History_Command();
std::unique_ptr<Subcommand> Make_Upgrade_Command();

} // namespace host
