// The local time as text. Callable from any thread.
#pragma once

#include <ctime>

#include "automation/text.h"

namespace shell {

// The general date-and-time text of the user's locale: the short date, a blank, the time. The locale is that
// of the environment (LC_ALL, LC_TIME, LANG) whatever the process has set; without one, or with one that is
// not installed, M/D/YYYY h:mm:ss AM/PM.
automation::String General_Date_Text(std::time_t time);
automation::String General_Date_Text(); // of now

} // namespace shell
