// The lines of text files that people edit. Pure functions, callable from any thread.
#pragma once

#include <vector>

#include "automation/text.h"
#include "shell/format_error.h"

namespace shell {

// The lines, without their LF or CR LF and without a byte-order mark; the n-th is line n + 1.
// Failure: Format_Error, without a file name, with the first line that is no text.
std::vector<automation::String> UTF8_Lines(std::string_view bytes);
// The same for UTF-16 when a byte-order mark of it stands at the beginning, else for UTF-8.
std::vector<automation::String> Unicode_Lines(std::string_view bytes);

// Without the blanks (spaces and tabs) at either end.
automation::String_View Without_Blanks(automation::String_View text);
automation::String_View Without_Leading_Blanks(automation::String_View text);

} // namespace shell
