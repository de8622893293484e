// Text output under fixed file numbers.
//
// The numbers belong to the whole process, as in the language that the product is written in: a number that
// one procedure leaves open is open for every other. Callable from any thread; two writes never mix.
//
// Failures, all automation::Failure: 52 for a number outside 1 .. 511, one that is not open, or a path with
// no name in it; 55 for a number that is open; 76 when a folder of the path does not exist; 70 when the
// rights do not suffice; 75 for everything else, such as a link or a folder in the place of the file.
#pragma once

#include "automation/text.h"

namespace shell {

// Opens the file for appending, or creates it for its owner alone. A link in the place of the file is not
// followed, and what is no regular file is not opened. A failure leaves the number closed.
void Open_For_Append(automation::Long file_number, automation::String_View path);

// Appends the text in double quotes and CR LF, in UTF-8, with nothing escaped. A failure leaves the number
// open.
void Write_Quoted_Line(automation::Long file_number, automation::String_View text);

// Nothing for a number that is not open.
void Close_File(automation::Long file_number);

} // namespace shell
