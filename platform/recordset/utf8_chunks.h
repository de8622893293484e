// Input_Driver out a text of UTF-16 as UTF-8, a bounded piece at a time, so that a large text is never held
// twice.
#pragma once

#include <cstddef>

#include "automation/text.h"

namespace recordset {

class UTF8_Chunks {
public:
    static constexpr std::size_t Most_Bytes_A_Unit = 3;

    explicit UTF8_Chunks(automation::String_View text) : rest(text) {}

    bool At_End() const { return rest.empty(); }
    std::size_t Left() const { return rest.size(); } // code units

    // Converts up to `units` code units, at least 2, into `target`, which holds Most_Bytes_A_Unit for each.
    // The length in bytes; nothing when a surrogate stands alone. A pair is never divided.
    std::optional<std::size_t> Take(std::size_t units, char* target);

private:
    automation::String_View rest;
};

} // namespace recordset
