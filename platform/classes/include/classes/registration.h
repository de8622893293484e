// The registered classes. Each module has a manifest, a small text file that names it and its classes, in one
// of these folders, in the order of the look-up:
//
//     yours               XDG_CONFIG_HOME/style-node/classes.d, else ~/.config/style-node/classes.d
//     the administrator's /etc/style-node/classes.d
//     the packages'       style-node/classes.d beside the platform's library
//
// In a folder the name with the highest number at its beginning goes first, then the names backwards; what is
// registered gets the next number. STYLE_NODE_MACHINE_CLASSES names one folder in the place of the last two.
// A broken manifest is skipped. A folder, a manifest or a module that others than root and this user may have
// changed, or that lies below such a folder, is refused (shell/trusted_file.h). Callable from any thread and
// from several processes at once.
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
    automation::String Program_Identity; // empty for a manifest that is skipped
    std::string Module;
    std::string Threading_Model;
    Scope Where;
    std::string Manifest; // its file
    std::string Problem;  // why it would not be created; empty when it would
};

// Where a registration goes: yours or the administrator's. Empty without a home folder.
std::string Class_Folder(Scope scope);

// Lets the module register its classes. All of the following throw Registration_Error.
void Register_Module(const std::string& path, Scope scope);
// Takes the module's manifest away, without loading it; the file may be broken or gone. Answers how many
// classes went.
int Unregister_Module(const std::string& path, Scope scope);
// Offers the module's classes to this process (class_table.h) instead of writing a manifest.
void Offer_Classes_Of(const std::string& path);
// Where the platform's library lies, by an absolute path.
std::string Platform_Folder();
// In the order of the look-up. No module is loaded.
std::vector<Registered_Class> Registered_Classes();
// Why a class cannot be created, or nothing. Creates an object of it, as a host would that offers nothing.
std::optional<std::string> Explain(automation::String_View program_identity);

} // namespace classes
