// Quoted texts of string tables and editing scripts: `"..."` with the escapes \" \\ \t \n and \uXXXX
// (four hexadecimal digits, one UTF-16 code unit each: two make a character beyond the basic plane, and
// a lone surrogate or NUL may be written that way too). Every other character stands for itself.
//
// Pure function, callable from any thread.
#pragma once

#include "automation/text.h"

namespace shell {

// Takes the quoted text that `rest` begins with; `rest` then stands behind the closing quote. Nothing,
// and `rest` as it was, when it does not begin with a quote, the closing quote is missing or an escape
// is none of the above.
std::optional<automation::String> Take_Quoted(automation::String_View& rest);

} // namespace shell
