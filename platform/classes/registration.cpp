#include "classes/registration.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>

#include "automation/text.h"
#include "class_folders.h"
#include "classes/class_table.h"
#include "modules.h"

namespace classes {

using automation::String;

namespace {

// Where DllRegisterServer's classes go while a module is asked for them; else each one goes to your folder.
thread_local std::vector<Manifest_Class>* asked_for = nullptr;

class Asked_For {
public:
    explicit Asked_For(std::vector<Manifest_Class>& classes) : old(std::exchange(asked_for, &classes)) {}
    ~Asked_For() { asked_for = old; }
    Asked_For(const Asked_For&) = delete;
    Asked_For& operator=(const Asked_For&) = delete;

private:
    std::vector<Manifest_Class>* const old;
};

const char target_library = 0; // an address in this library

std::string File_Of(const void* address) {
    Dl_info info{};
    if (!address || dladdr(address, &info) == 0 || !info.dli_fname)
        throw Registration_Error("the registering module's file is not known");
    return std::filesystem::canonical(info.dli_fname).string();
}

Manifest_Class Described(const Automation_Registration& registration) {
    if (!registration.Program_Identity || !registration.Threading_Model)
        throw Registration_Error("a registration has no programmatic identifier or no threading model");
    return {registration.Program_Identity, registration.Class_Identity,
            automation::To_UTF8(registration.Threading_Model)};
}

void Remove(std::vector<Manifest_Class>& from, const Manifest_Class& entry) {
    std::erase_if(from, [&](const Manifest_Class& other) {
        return automation::Equal_Ignoring_Case(other.Program_Identity, entry.Program_Identity);
    });
}

// What a failing entry point left behind.
void Check_Entry(Automation_Status status, const std::string& module) {
    if (status >= 0)
        return;
    const auto error = automation::Take_Error();
    const String reason = !error ? u"" : error->Reason.empty() ? error->Description : error->Reason;
    throw Registration_Error(reason.empty()
                                 ? "the module " + module + " failed with status " + std::to_string(status)
                                 : automation::To_UTF8(reason));
}

// The classes of a module that fits this interface.
Manifest Manifest_Of(const std::string& path) {
    Manifest manifest{Checked_Module(path), AUTOMATION_VERSION, {}};
    const Module_Hold module = Load_Module(manifest.Module);
    {
        const Asked_For here(manifest.Classes);
        Check_Entry(module->Register(), manifest.Module);
    }
    if (manifest.Classes.empty())
        throw Registration_Error("the module " + manifest.Module + " has no classes");
    for (const Manifest_Class& entry : manifest.Classes)
        Class_Object_In(*module, manifest.Module, entry.Class_Identity);
    return manifest;
}

// What your folder has of a module.
Manifest Your_Manifest(const std::string& module) {
    for (Found_Manifest& found : Read_Manifests())
        if (found.Where == Scope::User && found.Content.Module == module)
            return std::move(found.Content);
    return {module, AUTOMATION_VERSION, {}};
}

// What a creation would run into, short of loading the module.
std::string Problem_Of(const Manifest& manifest) {
    if (manifest.Interface != AUTOMATION_VERSION)
        return Other_Version(manifest.Module, manifest.Interface);
    try {
        Checked_Module(manifest.Module);
        return {};
    } catch (const Registration_Error& error) {
        return error.what();
    }
}

void List(const Found_Manifest& found, std::vector<Registered_Class>& all) {
    if (!found.Problem.empty())
        all.push_back({{}, {}, {}, found.Where, found.Path, found.Problem});
    const std::string problem = found.Problem.empty() ? Problem_Of(found.Content) : std::string();
    for (const Manifest_Class& entry : found.Content.Classes) {
        const auto first = std::find_if(all.begin(), all.end(), [&](const Registered_Class& other) {
            return automation::Equal_Ignoring_Case(other.Program_Identity, entry.Program_Identity);
        });
        all.push_back({entry.Program_Identity, found.Content.Module, entry.Threading_Model, found.Where,
                       found.Path,
                       first == all.end() ? problem : "passed over: " + first->Module + " comes first"});
    }
}

template <typename Body>
Automation_Status Report(Body&& body) noexcept {
    return automation::Guard(u"Registration", [&] {
        try {
            body();
        } catch (const Registration_Error& error) {
            throw automation::Failure(automation::run_time::Path_File_Access,
                                      automation::Description_Of(automation::run_time::Path_File_Access), {},
                                      automation::From_UTF8_Replacing(error.what()));
        }
    });
}

} // namespace

std::optional<std::string> Machine_Folder_From_Environment() {
    const char* chosen = secure_getenv("STYLE_NODE_MACHINE_CLASSES");
    return chosen && *chosen == '/' ? std::optional<std::string>(chosen) : std::nullopt;
}

std::string Class_Folder(Scope scope) {
    if (scope == Scope::Machine)
        return Machine_Folder_From_Environment().value_or(ADMINISTRATORS_CLASSES);
    const char* const folder = secure_getenv("XDG_CONFIG_HOME");
    if (folder && *folder == '/')
        return std::string(folder) + "/style-node/classes.d";
    const char* const home = secure_getenv("HOME");
    return home && *home == '/' ? std::string(home) + "/.config/style-node/classes.d" : "";
}

void Register_Module(const std::string& path, Scope scope) {
    Write_Manifest(scope, Manifest_Of(path));
}

int Unregister_Module(const std::string& path, Scope scope) {
    std::error_code error;
    const auto real = std::filesystem::weakly_canonical(path, error);
    const int count = Remove_Manifests(scope, path);
    return error || real == path ? count : count + Remove_Manifests(scope, real.string());
}

void Offer_Classes_Of(const std::string& path) {
    const Manifest manifest = Manifest_Of(path);
    for (const Manifest_Class& entry : manifest.Classes)
        Offer_Module(entry.Program_Identity, entry.Class_Identity, manifest.Module);
}

std::string Platform_Folder() {
    return std::filesystem::path(File_Of(&target_library)).parent_path().string();
}

std::vector<Registered_Class> Registered_Classes() {
    std::vector<Registered_Class> all;
    for (const Found_Manifest& found : Read_Manifests())
        List(found, all);
    return all;
}

} // namespace classes

Automation_Status Automation_Register(const Automation_Registration* registration) noexcept {
    using namespace classes;
    return Report([&] {
        const Manifest_Class entry = Described(*registration);
        Manifest alone;
        if (!asked_for)
            alone = Your_Manifest(File_Of(registration->Address));
        auto& target = asked_for ? *asked_for : alone.Classes;
        Remove(target, entry);
        target.push_back(entry);
        if (!asked_for)
            Write_Manifest(Scope::User, alone);
    });
}

Automation_Status Automation_Unregister(const Automation_Registration* registration) noexcept {
    using namespace classes;
    return Report([&] {
        Manifest manifest = Your_Manifest(File_Of(registration->Address));
        const std::size_t before = manifest.Classes.size();
        Remove(manifest.Classes, Described(*registration));
        if (manifest.Classes.empty())
            Remove_Manifests(Scope::User, manifest.Module);
        else if (manifest.Classes.size() != before)
            Write_Manifest(Scope::User, manifest);
    });
}
