// The two hives' keys.
#pragma once

#include "classes/registration.h"
#include "shell/hive_file.h"

namespace classes {

// Registration_Error.
shell::Hive_View Open_Hive(Scope scope);

automation::String Class_Key(Scope scope);
automation::String Identity_Key(Scope scope, const std::string& class_identity);
automation::String Program_Key(Scope scope, automation::String_View program_identity);

} // namespace classes
