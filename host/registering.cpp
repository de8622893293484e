#include "registering.h"

#include "automation/text.h"
#include "classes/class_table.h"
#include "classes/registration.h"
#include "own_modules.h"

namespace host {

namespace {

using classes::Registered_Class;
using classes::Scope;

void Print(const Registered_Class& entry, std::ostream& out) {
    const bool is_skipped = entry.Program_Identity.empty();
    out << (is_skipped ? "-" : automation::To_UTF8(entry.Program_Identity)) << '\t'
        << (entry.Where == Scope::User ? "user" : "machine") << '\t'
        << (is_skipped ? "-" : entry.Threading_Model) << '\t' << (is_skipped ? entry.Manifest : entry.Module)
        << '\t' << (entry.Problem.empty() ? "ok" : entry.Problem) << '\n';
}

// From the modules beside the program, which a host does not have.
bool Is_Created_Here(automation::String_View program_identity) {
    try {
        return static_cast<bool>(classes::Create_Behind(program_identity));
    } catch (const automation::Failure&) {
        return false;
    }
}

bool Explain(const std::string& name, std::ostream& out) {
    const auto program_identity = automation::From_UTF8_Replacing(name);
    for (const auto& entry : classes::Registered_Classes())
        if (automation::Equal_Ignoring_Case(entry.Program_Identity, program_identity))
            Print(entry, out);
    const auto problem = classes::Explain(program_identity);
    out << name << ": " << (problem ? "cannot be created: " + *problem : "can be created")
        << (problem && Is_Created_Here(program_identity) ? "; style-editor itself uses its own" : "") << '\n';
    return !problem;
}

// Who has it instead, for instance a package, whose manifest is not ours to take away.
std::string Other_Manifest_Of(const std::string& module) {
    for (const auto& entry : classes::Registered_Classes())
        if (entry.Module == module)
            return "; it is registered by " + entry.Manifest;
    return {};
}

template <typename Body>
auto Explained(Body&& body) {
    try {
        return body();
    } catch (const classes::Registration_Error& error) {
        throw Start_Error(error.what());
    }
}

} // namespace

void Register(const Register_Command& command, std::ostream& out) {
    const Scope scope = command.Machine ? Scope::Machine : Scope::User;
    Explained([&] {
        for (const std::string& module : command.Modules) {
            if (!command.Removes) {
                classes::Register_Module(module, scope);
                out << "registered " << module << '\n';
            } else if (const int count = classes::Unregister_Module(module, scope)) {
                out << "unregistered " << module << " (classes: " << count << ")\n";
            } else {
                throw Start_Error("nothing of " + module + " is registered in " +
                                  classes::Class_Folder(scope) + Other_Manifest_Of(module));
            }
        }
    });
}

bool List(const List_Command& command, std::ostream& out) {
    Offer_Own_Modules();
    return Explained([&] {
        bool all_found = true;
        for (const std::string& name : command.Classes)
            all_found = Explain(name, out) && all_found;
        if (command.Classes.empty())
            for (const auto& entry : classes::Registered_Classes())
                Print(entry, out);
        return all_found;
    });
}

} // namespace host
