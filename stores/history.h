// The history of a store as a persisted recordset; see interfaces/store_history.h.
#pragma once

#include <array>

#include "automation/variant.h"
#include "session.h"

namespace stores {

// `keys`: configuration, partition and node; Empty leaves the choice open. Throws automation::Failure and
// Store_Error.
automation::Variant Changes_Of(Session& session, const std::array<const automation::Variant*, 3>& keys);

} // namespace stores
