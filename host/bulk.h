// The commands for many nodes at once: a partition as JSON Lines, and edited lines back into the store.
#pragma once

#include "host/command_line.h"
#include "host/program.h"

namespace host {

// One line a node, in the order of their numbers; False when there is none.
bool Export(const Export_Command& command, const Streams& streams);

// Applies every line or none; False when a line was refused. Prints refusals, and in a dry run changes, in
// the order of the lines; in the end the command that takes it back. Throws Usage_Error and Start_Error,
// after which nothing has changed.
bool Apply(const Apply_Command& command, const Streams& streams);

} // namespace host
