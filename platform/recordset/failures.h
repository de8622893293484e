// Failures of the recordset library, raised under the name of the object that fails.
#pragma once

#include "recordset/recordset.h"

namespace recordset {

namespace number {
constexpr Long Invalid_Source = 3709; // Open only: the stream is unset or closed
}

// `source` is the programmatic identifier of the object.
[[noreturn]] void Fail(String_View source, Long number);

} // namespace recordset
