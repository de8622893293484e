#include "classes/registration.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>

#include "automation/text.h"
#include "classes/class_table.h"
#include "hives.h"
#include "modules.h"
#include "registered.h"
#include "trust.h"

namespace classes {

using automation::String;
using automation::String_View;

namespace {

// Where DllRegisterServer's classes go: to the hive that a command has chosen, else to the user's; or to the
// process alone.
struct Target {
    Scope Hive = Scope::User;
    bool Only_Offered = false;
};
thread_local Target target;

class Chosen_Target {
public:
    explicit Chosen_Target(Target chosen) : old(std::exchange(target, chosen)) {}
    ~Chosen_Target() { target = old; }
    Chosen_Target(const Chosen_Target&) = delete;
    Chosen_Target& operator=(const Chosen_Target&) = delete;

private:
    const Target old;
};

std::string Writable_Hive(Scope scope) {
    std::string path = Hive_Path(scope);
    if (path.empty())
        throw Registration_Error("there is no home folder for your class hive; set HOME");
    if (const auto problem = Distrust(path))
        throw Registration_Error("the class hive is not changed: " + *problem);
    return path;
}

void Change(Scope scope, const std::vector<String>& removed, const std::vector<shell::Hive_Text>& added) {
    const std::string path = Writable_Hive(scope);
    try {
        shell::Change_Hive(path, removed, added, scope == Scope::User ? 0600 : 0644);
    } catch (const shell::Format_Error& error) {
        throw Registration_Error(error.what());
    }
}

std::vector<String> Keys_Of(Scope scope, String_View program_identity, const std::string& class_identity) {
    return {Program_Key(scope, program_identity), Identity_Key(scope, class_identity)};
}

void Write_Class(Scope scope, const Registered_Class& entry) {
    const String program = Program_Key(scope, entry.Program_Identity);
    const String identity = Identity_Key(scope, entry.Class_Identity);
    const String identity_text = automation::From_UTF8_Replacing(entry.Class_Identity);
    Change(scope, Keys_Of(scope, entry.Program_Identity, entry.Class_Identity),
           {{program + u"\\CLSID", {}, identity_text},
            {identity + u"\\ProgID", {}, entry.Program_Identity},
            {identity + u"\\InprocServer32", {}, automation::From_UTF8_Replacing(entry.Module)},
            {identity + u"\\InprocServer32", u"ThreadingModel",
             automation::From_UTF8_Replacing(entry.Threading_Model)}});
}

const char target_library = 0; // an address in this library

std::string File_Of(const void* address) {
    Dl_info info{};
    if (!address || dladdr(address, &info) == 0 || !info.dli_fname)
        throw Registration_Error("the registering module's file is not known");
    return std::filesystem::canonical(info.dli_fname).string();
}

Registered_Class Described(const Automation_Registration& registration) {
    if (!registration.Program_Identity || !registration.Threading_Model)
        throw Registration_Error("a registration has no programmatic identifier or no threading model");
    return {registration.Program_Identity,
            Identity_Text(registration.Class_Identity),
            File_Of(registration.Address),
            automation::To_UTF8(registration.Threading_Model),
            target.Hive,
            {}};
}

std::vector<Registered_Class> Classes_In(Scope scope) {
    const auto hive = Open_Hive(scope);
    std::vector<Registered_Class> found;
    for (const String& name : hive.Names_Below(Class_Key(scope) + u"\\CLSID")) {
        const String key = Class_Key(scope) + u"\\CLSID\\" + name;
        const auto identity = Parse_Identity(automation::To_UTF8(name));
        found.push_back({automation::From_UTF8_Replacing(hive.Text(key + u"\\ProgID").value_or("")),
                         identity ? Identity_Text(*identity) : automation::To_UTF8(name),
                         hive.Text(key + u"\\InprocServer32").value_or(""),
                         hive.Text(key + u"\\InprocServer32", "ThreadingModel").value_or("Apartment"),
                         scope,
                         {}});
    }
    return found;
}

// What a creation would run into, short of loading the module.
std::string Problem_Of(const Registered_Class& entry) {
    const auto identity = Parse_Identity(entry.Class_Identity);
    if (!identity)
        return entry.Class_Identity + " is no class identity";
    if (const auto problem = Module_Distrust(entry.Module))
        return *problem;
    try {
        const auto chosen = Find_Registered(entry.Program_Identity);
        if (!chosen)
            return "no programmatic identifier leads to it; register its module anew";
        if (chosen->Module != entry.Module)
            return "passed over: " + chosen->Module + " comes first";
    } catch (const Registration_Error& error) {
        return error.what();
    }
    return {};
}

int Remove_Classes_Of(const std::string& module, Scope scope) {
    std::vector<String> keys;
    int count = 0;
    for (const auto& entry : Classes_In(scope)) {
        if (entry.Module != module)
            continue;
        for (String& key : Keys_Of(scope, entry.Program_Identity, entry.Class_Identity))
            keys.push_back(std::move(key));
        ++count;
    }
    if (count > 0)
        Change(scope, keys, {});
    return count;
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

std::string Real_Module(const std::string& path) {
    if (const auto problem = Module_Distrust(path))
        throw Registration_Error(*problem);
    return std::filesystem::canonical(path).string();
}

} // namespace

std::string Hive_Path(Scope scope) {
    if (scope == Scope::Machine) {
        const char* chosen = secure_getenv("STYLE_NODE_MACHINE_HIVE");
        return chosen && *chosen == '/' ? chosen : MACHINE_HIVE;
    }
    const char* const folder = secure_getenv("XDG_CONFIG_HOME");
    if (folder && *folder == '/')
        return std::string(folder) + "/style-node/classes.reg";
    const char* const home = secure_getenv("HOME");
    return home && *home == '/' ? std::string(home) + "/.config/style-node/classes.reg" : "";
}

void Register_Module(const std::string& path, Scope scope) {
    const std::string module = Real_Module(path);
    const Chosen_Target chosen({scope});
    Check_Entry(Load_Module(module).Register(), module);
    Free_Unused_Modules();
}

int Unregister_Module(const std::string& path, Scope scope) {
    std::error_code error;
    const auto real = std::filesystem::canonical(path, error);
    const std::string module = error ? path : real.string();
    const auto before = Classes_In(scope).size();
    if (!Module_Distrust(module)) {
        const Chosen_Target chosen({scope});
        Check_Entry(Load_Module(module).Unregister(), module);
        Free_Unused_Modules();
    }
    Remove_Classes_Of(module, scope);
    return static_cast<int>(before - Classes_In(scope).size());
}

void Offer_Classes_Of(const std::string& path) {
    const std::string module = Real_Module(path);
    const Chosen_Target chosen({.Only_Offered = true});
    Check_Entry(Load_Module(module).Register(), module);
}

std::string Platform_Folder() {
    return std::filesystem::path(File_Of(&target_library)).parent_path().string();
}

std::vector<Registered_Class> Registered_Classes() {
    std::vector<Registered_Class> all;
    for (const Scope scope : {Scope::User, Scope::Machine})
        for (auto& entry : Classes_In(scope)) {
            entry.Problem = Problem_Of(entry);
            all.push_back(std::move(entry));
        }
    return all;
}

} // namespace classes

Automation_Status Automation_Register(const Automation_Registration* registration) noexcept {
    return classes::Report([&] {
        const auto entry = classes::Described(*registration);
        if (classes::target.Only_Offered)
            classes::Offer_Module(entry.Program_Identity, registration->Class_Identity, entry.Module);
        else
            classes::Write_Class(entry.Where, entry);
    });
}

Automation_Status Automation_Unregister(const Automation_Registration* registration) noexcept {
    return classes::Report([&] {
        const auto entry = classes::Described(*registration);
        const auto place = classes::Find_Registered(registration->Class_Identity);
        if (place && place->Module == entry.Module)
            classes::Change(entry.Where,
                            classes::Keys_Of(entry.Where, entry.Program_Identity, entry.Class_Identity), {});
    });
}
