// Whole files that the command line names.
#pragma once

#include <string>
#include <string_view>

#include "automation/text.h"

namespace host {

// Throws Start_Error when the file cannot be read.
std::string Read_File(const std::string& path);
// Throws Start_Error also when it is not UTF-8.
automation::String Read_Text_File(const std::string& path);
// For the owner alone, and on the disk when it returns. Throws Start_Error, also when there is something
// already.
void Write_New_File(const std::string& path, std::string_view bytes);

} // namespace host
