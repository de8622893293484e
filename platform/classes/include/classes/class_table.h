// The classes of the process: those that it provides itself, before all others, and those that a host offers,
// behind the registered ones.
//
// The table may be used from every thread; a class's Create runs on the thread that asks for the object,
// outside the table's lock. Modules use automation/create.h.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "automation/create.h"

namespace classes {

using automation::Identity;
using automation::Reference;
using automation::String;
using automation::String_View;
using automation::Unknown;

struct Class_Description {
    String Program_Identity;
    Identity Class_Identity;
    // Failures of its own pass through to the caller; no object is 429.
    std::function<Reference<Unknown>()> Create;
};

// Replaces what was provided under the same programmatic identifier.
void Provide_Class(Class_Description description);
void Revoke_Class(String_View program_identity);
// As Automation_Create, but passing over what is provided: what a provided class stands in front of.
Reference<Unknown> Create_Underlying(String_View program_identity);

// For what is neither provided nor registered. The second form names a module's file by an absolute path.
void Offer_Class(Class_Description description);
void Offer_Module(String_View program_identity, const Identity& class_identity, const std::string& path);

} // namespace classes
