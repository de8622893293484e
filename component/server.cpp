// The component as a module: its one class, and the four entry points.
#include "automation/server.h"

#include "component/create.h"
#include "style_node/busyness_rules.h"

namespace {

const automation::Server_Class Classes[] = {
    {STYLE_NODE_PROGRAM_IDENTITY, STYLE_NODE_CLASS_IDENTITY, component::Create_Busyness_Rules}};

} // namespace

AUTOMATION_SERVER(Classes)
