// Nodes as tables for a person: which of them hold a text, and all values of one.
#pragma once

#include "host/command_line.h"
#include "host/program.h"

namespace host {

// False when no node holds the text.
bool Find_Nodes(const Find_Command& command, const Streams& streams);
// False when the node does not exist.
bool Show_Node(const Show_Command& command, const Streams& streams);

} // namespace host
