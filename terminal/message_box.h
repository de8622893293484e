// A message box over whatever is on the screen.
#pragma once

#include "screen.h"
#include "toolkit/display.h"

namespace terminal {

// The answer; when the terminal goes meanwhile, Cancel to a question and Not_Shown otherwise.
automation::Long Ask(Screen& screen, const toolkit::Message& message);

} // namespace terminal
