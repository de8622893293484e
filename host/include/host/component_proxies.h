// Proxies before the product's components: objects of the same interfaces that ask a Call_Plan at every call
// and then pass it on.
//
// They are installed by registering the product's classes once more, around their own Create. All of it
// comes on the thread that creates and calls the components.
#pragma once

#include <memory>

#include "host/call_plan.h"

namespace host {

// Wraps the product's classes as far as they are registered. Objects made from now on share the plan.
void Install_Proxies(const std::shared_ptr<Call_Plan>& plan);

// Throws Usage_Error unless the program knows the programmatic identifier: a registered one, or one of the
// product's.
void Require_Known_Class(const std::string& program_identity);
// Creating the class fails from now on.
void Make_Missing(const std::string& program_identity);

} // namespace host
