// Whole inputs and files that the command line names. What is larger than its bound is not read to its end.
#pragma once

#include <istream>
#include <string>
#include <string_view>

#include "automation/text.h"

namespace host {

// The file, or for "-" the standard input, of at most 64 MiB. Throws Start_Error when it cannot be read.
std::string Read_Input(const std::string& path, std::istream& standard_input);
// A file of at most 256 MiB. Throws Start_Error also when it is not UTF-8.
automation::String Read_Text_File(const std::string& path);
// For the owner alone, and on the disk when it returns. Throws Start_Error, also when there is something
// already.
void Write_New_File(const std::string& path, std::string_view bytes);

} // namespace host
