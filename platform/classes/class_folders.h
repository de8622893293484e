// The folders of manifests. Callable from any thread and from several processes at once.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "classes/registration.h"
#include "manifest.h"

namespace classes {

struct Found_Manifest {
    std::string Path; // of the manifest; of the folder when that cannot be used
    Scope Where;
    Manifest Content;    // its module by an absolute path; empty when there is a problem
    std::string Problem; // why it is skipped
};

// The folder that stands in the place of the machine's.
std::optional<std::string> Machine_Folder_From_Environment();

// In the order of the look-up: your folder, the administrator's, the one of the packages; in each the highest
// number before a name first, then the names backwards, so that what came last counts. A missing folder is
// empty.
std::vector<Found_Manifest> Read_Manifests();

// Puts the module's manifest into the scope's folder, before all others there and in the place of an older
// one. A reader sees the old or the new one. Registration_Error.
void Write_Manifest(Scope scope, const Manifest& manifest);

// Takes the manifests of a module out of the scope's folder; answers how many classes went.
// Registration_Error.
int Remove_Manifests(Scope scope, const std::string& module);

} // namespace classes
