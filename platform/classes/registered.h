// Look-up in the two hives. Callable from any thread.
#pragma once

#include <optional>
#include <string>

#include "classes/registration.h"

namespace classes {

struct Place {
    automation::Identity Class_Identity;
    std::string Module;
    std::string Threading_Model;
};

// Nothing when no hive has the class. Registration_Error when a hive cannot be trusted or read, or has an
// incomplete entry.
std::optional<Place> Find_Registered(automation::String_View program_identity);
std::optional<Place> Find_Registered(const automation::Identity& class_identity);

std::string Identity_Text(const automation::Identity& identity);
std::optional<automation::Identity> Parse_Identity(const std::string& text);

} // namespace classes
