// What makes the database itself write the history of its nodes, for every program that changes them. The
// rules stand in docs/sharing-a-store.md.
//
// A file has triggers for each row, in plain SQL, so that any program can still write it. A server has them
// for each statement; they run with the rights of the store's owner, who alone can write the history.
#pragma once

#include <string>
#include <vector>

#include "connection.h"

namespace stores {

// The statements that bring a store of version 2 to version 3, but for the triggers.
std::vector<std::string> To_Version_3(Connection& connection);

// From then on every change of a node is noted.
std::vector<std::string> Triggers(Connection& connection);

// How a server knows the writers of a partition: the two numbers of their advisory lock.
constexpr int Lock_Class = 0x5354594C;
int Lock_Number(int config, int partition);

} // namespace stores
