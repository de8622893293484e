// Proxies before the product's components: objects of the same interfaces that ask a Fault_Plan at every call
// and then pass it on.
//
// They are installed as classes that the process provides, in front of the registered ones. All of it comes
// on the thread that creates and calls the components.
#pragma once

#include <memory>

#include "faults/fault_plan.h"

namespace host {

// Wraps the product's classes. Objects made from now on share the plan.
void Install_Proxies(const std::shared_ptr<Fault_Plan>& plan);

// Throws Usage_Error unless the editor creates the class: the product's, its own, or the recordset library's.
void Require_Known_Class(const std::string& program_identity);
// Creating the class fails from now on.
void Make_Missing(const std::string& program_identity);
// Takes back what an earlier run has installed or made missing.
void Remove_Proxies();

} // namespace host
