#include "component/register.h"

#include "busyness_rules.h"

namespace component {

void Register_Classes() {
    using Interface = style_node::_Busyness_Rules;
    recordset::Register_Classes();
    automation::Register_Class({String(Interface::Program_Identity), Interface::Class_Identity,
                                []() -> automation::Reference<automation::Unknown> {
                                    automation::Reference<Interface> object =
                                        automation::Make_Object<Busyness_Rules>();
                                    return object;
                                }});
}

} // namespace component
