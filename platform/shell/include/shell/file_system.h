// Paths of the product on this machine's file system. Callable from any thread.
#pragma once

#include "automation/text.h"

namespace shell {

// The product separates folders by a backslash, this machine by a slash. UTF-8.
std::string Native_Path(automation::String_View path);

// Links are followed. False for everything that cannot be told to be a folder.
bool Folder_Exists(automation::String_View path);

} // namespace shell
