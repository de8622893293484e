// Makes the text stream of recordset.h.
#pragma once

#include "recordset/recordset.h"

namespace recordset {

automation::Reference<Stream> Make_Stream();

} // namespace recordset
