// What has become of a store: its history, printed, and its upgrade.
#pragma once

#include <ostream>

#include "host/command_line.h"

namespace host {

// The store's changes, the oldest first: for a person, a paragraph each, or a JSON object a line. What a
// node's text or a name holds cannot be taken for anything else: whatever would move the cursor, hide or turn
// text is escaped. Throws Start_Error.
void Print_History(const Store_History_Command& command, std::ostream& out);

// Answers the store's name; throws Start_Error.
std::string Upgrade_Store(const Store_Upgrade_Command& command);

} // namespace host
