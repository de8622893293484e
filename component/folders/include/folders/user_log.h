// The user log: one line for each error that could not be reported otherwise.
//
// Every failure raises automation::Failure; the caller's own silent trap ends the write there. The log is
// written under file number 1, the same in the whole process, and a failure between opening and closing
// leaves it open: every later write then fails with 55. Callable from any thread.
#pragma once

#include "automation/text.h"

namespace folders {

struct Log_Entry {
    // The configuration record's fields at positions 1, 5 and 3; 0 when there is no record.
    automation::Integer Configuration_A = 0;
    automation::Integer Configuration_B = 0;
    automation::Integer Configuration_C = 0;
    automation::Long Code = 0;
    automation::String Description;
    automation::String Location;
};

// User_Log.txt in the product's data folder. Ask for it before the configuration is read: a folder that
// cannot be found ends the write before anything else is called.
automation::String User_Log_Path();

// Appends the entry with the present time as one quoted, tab-separated line, in which nothing is escaped. A
// file that does not exist is created, a folder is not.
void Append_To_User_Log(automation::String_View path, const Log_Entry& entry);

} // namespace folders
