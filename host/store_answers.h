// What the commands for stores share: an answer of the store as rows, and its texts on a terminal.
#pragma once

#include <string>

#include "recordset/recordset.h"

namespace host {

// The persisted recordset in an answer. Throws automation::Failure.
automation::Reference<recordset::Recordset> Opened(const automation::Variant& xml);

// A text as it stands, but for quotes, backslashes and what would move the cursor, hide or turn text: these
// are escaped.
std::string Visible(automation::String_View text);

} // namespace host
