// Class objects, found by programmatic identifier (without regard to case) or by class identity.
//
// The table belongs to the process and may be used from every thread; a class's Create runs on the
// thread that asks for the object, outside the table's lock.
#pragma once

#include <functional>
#include <vector>

#include "automation/unknown.h"

namespace automation {

struct Class_Description {
    String Program_Identity;
    Identity Class_Identity;
    std::function<Reference<Unknown>()> Create; // failures of its own pass through to the caller
};

// Replaces a class that is registered under the same programmatic identifier.
void Register_Class(Class_Description description);
void Revoke_Class(String_View program_identity);
std::vector<Class_Description> Registered_Classes();

// 429 when no such class is registered or its Create gives no object.
Reference<Unknown> Create_Object(String_View program_identity);
Reference<Unknown> Create_Object(const Identity& class_identity);

// Creates and binds in one step: 429, 430.
template <typename Interface>
Reference<Interface> Create_Bound(String_View program_identity) {
    return Bind<Interface>(Create_Object(program_identity));
}

} // namespace automation
