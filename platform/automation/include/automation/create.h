// Creating objects by programmatic identifier (without regard to case) or by class identity.
//
// 429 when the class cannot be created, with the reason; 430 when the object does not have the interface; a
// failure of the class's own passes through. Callable from any thread; the object belongs to the thread that
// creates it, unless its contract says otherwise.
#pragma once

#include "automation/unknown.h"

namespace automation {

template <typename Interface>
Reference<Interface> Create_Bound(String_View program_identity) {
    void* object = nullptr;
    Check(Automation_Create(program_identity.data(), static_cast<std::uint32_t>(program_identity.size()),
                            &Interface::Interface_Identity, &object));
    return Reference<Interface>::Adopt(static_cast<Interface*>(object));
}

template <typename Interface>
Reference<Interface> Create_Bound(const Identity& class_identity) {
    void* object = nullptr;
    Check(Automation_Create_By_Identity(&class_identity, &Interface::Interface_Identity, &object));
    return Reference<Interface>::Adopt(static_cast<Interface*>(object));
}

inline Reference<Unknown> Create_Object(String_View program_identity) {
    return Create_Bound<Unknown>(program_identity);
}
inline Reference<Unknown> Create_Object(const Identity& class_identity) {
    return Create_Bound<Unknown>(class_identity);
}

} // namespace automation
