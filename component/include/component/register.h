// Makes KOR_STYLE_Node.Busyness_Rules known to the class table, with the recordset library that it uses.
#pragma once

namespace component {

// Call it once per process before the first object is created.
void Register_Classes();

} // namespace component
