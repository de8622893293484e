// Reads the one shape that writer.cpp makes, straight from its UTF-16 and in one pass.
//
// Pure function, callable from any thread.
#pragma once

#include <optional>

#include "row_store.h"

namespace recordset {

// What the XML parser would make of the same text. Nothing when the text is of another shape in the least:
// that says nothing about whether it is readable. Throws std::bad_alloc only.
std::optional<Row_Store> Read_Canonical_Form(automation::String_View text);

} // namespace recordset
