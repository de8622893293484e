// The commands of a script that act on a dialog.
#pragma once

#include "scripts/script.h"
#include "toolkit/input_driver.h"

namespace host {

// Why the command could not be performed, or nothing. A command ends silently when the dialog goes away in
// the middle of it.
toolkit::Input_Driver::Refusal Perform_On(toolkit::Input_Driver& driver, toolkit::Form& form,
                                          const Command& command);

} // namespace host
