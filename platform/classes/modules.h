// The modules that are loaded in this process. Callable from any thread.
#pragma once

#include <string>

#include "automation/interface.h"

namespace classes {

using Class_Object = automation::Reference<Automation_Class_Object>;

struct Entry_Points {
    Automation_Status (*Register)();
    Automation_Status (*Unregister)();
    Automation_Status (*Get_Class_Object)(const Automation_Identity*, const Automation_Identity*, void**);
    Automation_Status (*Can_Unload)();
};

// Loads the module, or finds it loaded; it is trusted, complete and of this version, or nothing of it stays.
// Registration_Error. The entry points are good while an object of the module lives, or until
// Free_Unused_Modules.
Entry_Points Load_Module(const std::string& path);

Class_Object Class_Object_In(const std::string& path, const automation::Identity& class_identity);

// How many stay loaded.
std::int32_t Free_Unused_Modules();

} // namespace classes
