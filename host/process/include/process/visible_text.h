// Texts that do not come from this program, on their way to a person: nothing in them moves the cursor, hides
// or turns text, or ends a line. Pure functions.
#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "automation/text.h"

namespace host {

// A text as it stands, but for quotes, backslashes and what would move the cursor, hide or turn text: these
// are escaped.
std::string Visible(automation::String_View text);
// The same for a message, in UTF-8, whose quotes and backslashes stay.
std::string Visible_Text(const std::string& text);
// The same for a report, whose lines and tabs stay.
std::string Visible_Lines(const std::string& text);

// A report that holds texts of others; what it has said by then is printed also when it fails.
void Print_Visibly(std::ostream& out, const std::function<void(std::ostream&)>& report);

} // namespace host
