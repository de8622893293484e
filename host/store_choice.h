// Which store a run works on.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "stores/store.h"

namespace host {

// The store of that name; without one, the user's own, which is made with sample data when it is missing.
// Throws Start_Error.
std::shared_ptr<stores::Store> Open_Store(const std::optional<std::string>& name);

} // namespace host
