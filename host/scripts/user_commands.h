// The commands of a script that act on a dialog.
#pragma once

#include "scripts/script.h"
#include "toolkit/hands.h"

namespace host {

// Why the command could not be performed, or nothing. A command ends silently when the dialog goes away in
// the middle of it.
toolkit::Hands::Refusal Perform_On(toolkit::Hands& hands, toolkit::Form& form, const Command& command);

} // namespace host
