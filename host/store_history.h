// What has become of a store: its history, changes that are taken back, and its upgrade.
#pragma once

#include "host/command_line.h"
#include "host/program.h"

namespace host {

// The store's changes, the oldest first: for a person, a paragraph each, or a JSON object a line. What a
// node's text or a name holds cannot be taken for anything else: whatever would move the cursor, hide or turn
// text is escaped. False when the place that was asked for has none. Throws Start_Error.
bool Print_History(const Store_History_Command& command, const Streams& streams);

// Takes recorded changes back, all or none; False when one was refused. Prints refusals, in a dry run what
// would change, and in the end the command that takes it back. Throws Start_Error.
bool Revert(const Revert_Command& command, const Streams& streams);

// Answers the store's name; throws Start_Error.
std::string Upgrade_Store(const Store_Upgrade_Command& command);

} // namespace host
