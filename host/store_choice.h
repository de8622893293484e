// Which store a run works on.
#pragma once

#include <optional>
#include <string>

namespace host {

// Lets the stand-ins of the product's components work on the store of that name, or on the user's own. Does
// nothing without stand-ins when no name is given: the product's own components know their store. Throws
// Start_Error.
void Open_Store(const std::optional<std::string>& name);
void Close_Store() noexcept;

} // namespace host
