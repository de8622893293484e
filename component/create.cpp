#include "component/create.h"

#include "busyness_rules.h"

namespace component {

automation::Reference<automation::Unknown> Create_Busyness_Rules() {
    recordset::Offer_Classes();
    const automation::Reference<style_node::_Busyness_Rules> object =
        automation::Make_Object<Busyness_Rules>();
    return object;
}

} // namespace component
