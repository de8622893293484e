// Which store a run works on.
#pragma once

#include <optional>
#include <string>

#include "automation/variant.h"

namespace host {

// Lets the stand-ins of the product's components work on the store of that name, or on the user's own. Does
// nothing without stand-ins when no name is given: the product's own components know their store. Throws
// Start_Error.
void Open_Store(const std::optional<std::string>& name);
void Close_Store() noexcept;

// The name as the keeper of the store takes it.
automation::Variant Store_Location(const std::optional<std::string>& name);

// Why the keeper could not do it, as a Start_Error.
[[noreturn]] void Give_Up(const automation::Failure& failure);

} // namespace host
