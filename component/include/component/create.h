// Makes the objects of KOR_STYLE_Node.Busyness_Rules, for the module that serves the class.
#pragma once

#include "automation/unknown.h"

namespace component {

// Never fails for want of a product component: what cannot be created stays unset in the object.
automation::Reference<automation::Unknown> Create_Busyness_Rules();

} // namespace component
