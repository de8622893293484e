// The 8-bit texts of the functions whose names end in A. The 8-bit character set here is UTF-8.
// Pure function, callable from any thread.
#pragma once

#include "automation/text.h"

namespace shell {

// Never fails: when `bytes` is not well-formed UTF-8, every byte beyond ASCII becomes U+FFFD.
automation::String From_Eight_Bit(std::string_view bytes);

} // namespace shell
