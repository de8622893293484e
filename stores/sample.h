// What a new store holds: nodes of every supervised type with usual telephony values, the lookup lists in
// English (language 1) and German (language 2), and a configuration record.
#pragma once

#include <optional>

#include "connection.h"

namespace stores {

// Fills empty tables; with `nodes`, configuration 1, partition 1 gets the default node and nodes 1 to
// `nodes` instead of the sample's.
void Insert_Sample(Connection& connection, std::optional<int> nodes);

} // namespace stores
