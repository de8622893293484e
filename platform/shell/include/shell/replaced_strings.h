// A string table that takes the place of the components' own, in the whole process: a translator tries a
// table without building anything. Callable from any thread.
#pragma once

#include <memory>

#include "shell/string_table.h"

namespace shell {

void Replace_Strings(String_Table table);
void Restore_Strings();

// Null while the components' own texts count.
std::shared_ptr<const String_Table> Replaced_Strings();

} // namespace shell
