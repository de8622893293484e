// The registered classes: programmatic identifier, class identity, module and threading model, kept in two
// hives, the user's before the machine's.
//
//     HKEY_CURRENT_USER\Software\Classes (the user's), HKEY_LOCAL_MACHINE\SOFTWARE\Classes (the machine's)
//         \PROGRAM-IDENTITY\CLSID                 @="{class identity}"
//         \CLSID\{class identity}\ProgID          @="PROGRAM-IDENTITY"
//         \CLSID\{class identity}\InprocServer32  @="absolute path", "ThreadingModel"="Apartment"
//
// A hive, a module or the folder of either that others than its owner (root or this user) may write is
// refused; a missing hive is an empty one. Callable from any thread and from several processes at once.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "automation/unknown.h"

namespace classes {

enum class Scope { User, Machine };

// One line that says what is wrong and what to do.
struct Registration_Error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Registered_Class {
    automation::String Program_Identity;
    std::string Class_Identity; // {…}, as the hive has it
    std::string Module;
    std::string Threading_Model;
    Scope Where;
    std::string Problem; // why it would not be created; empty when it would
};

// Where the hive is: STYLE_NODE_MACHINE_HIVE or the path that was built in; the user's below XDG_CONFIG_HOME.
std::string Hive_Path(Scope scope);

// Lets the module register its classes. All of the following throw Registration_Error.
void Register_Module(const std::string& path, Scope scope);
// Lets the module take its classes back, and removes what still names its file. Also for a file that has
// gone. Answers how many classes went.
int Unregister_Module(const std::string& path, Scope scope);
// Offers the module's classes to this process (class_table.h) instead of writing them to a hive.
void Offer_Classes_Of(const std::string& path);
// Where the platform's library lies, by an absolute path.
std::string Platform_Folder();
// In the order of the look-up.
std::vector<Registered_Class> Registered_Classes();
// Why a class cannot be created, or nothing. Creates an object of it.
std::optional<std::string> Explain(automation::String_View program_identity);

} // namespace classes
