// The modules that are loaded in this process. Callable from any thread.
#pragma once

#include <memory>
#include <string>

#include "automation/interface.h"

namespace classes {

struct Module;
// Keeps a module loaded.
using Module_Hold = std::shared_ptr<const Module>;

struct Module {
    void* Handle;
    Automation_Status (*Register)();
    Automation_Status (*Unregister)();
    Automation_Status (*Get_Class_Object)(const Automation_Identity*, const Automation_Identity*, void**);
    Automation_Status (*Can_Unload)();
};

// The path without links of a module's file that may be trusted and is a whole shared library for this
// machine. Registration_Error.
std::string Checked_Module(const std::string& path);

// Loads the checked module, or finds it loaded; it is complete, or nothing of it stays. Registration_Error.
Module_Hold Load_Module(const std::string& path);

using Class_Object = automation::Reference<Automation_Class_Object>;

// Registration_Error when the module was built for another version of the interface, or does not have the
// class. The hold has to outlive the class object.
Class_Object Class_Object_In(const Module& module, const std::string& path,
                             const automation::Identity& class_identity);

// "the module PATH was built for version 2 of the interface, ...": `version` 0 when it is not known.
std::string Other_Version(const std::string& path, std::uint32_t version);

// How many stay loaded. A module goes when it was idle at an earlier call at least Idle_Milliseconds ago and
// has not been used since: the thread that released its last object may still be on its way out of the
// module's code.
constexpr int Idle_Milliseconds = 1000;
std::int32_t Free_Unused_Modules();

} // namespace classes
