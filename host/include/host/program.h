// The program as a whole, for main() and for tests.
#pragma once

#include <string>
#include <vector>

#include "process/streams.h"

namespace host {

// Answers the exit status and throws nothing. `arguments` is the command line, the program's name first.
// Runs of one process come one after the other; texts, registry and folder that one has set stay for the
// next.
int Run_Program(const std::vector<std::string>& arguments, const Streams& streams) noexcept;

} // namespace host
