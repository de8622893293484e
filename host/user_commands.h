// The commands of a script that act on a dialog.
#pragma once

#include "host/script.h"
#include "toolkit/user_input.h"

namespace host {

// Why the command could not be performed, or nothing. A command ends silently when the dialog goes away in
// the middle of it.
toolkit::user_input::Refusal Perform_On(toolkit::Form& form, const Command& command);

} // namespace host
