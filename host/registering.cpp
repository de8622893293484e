#include "registering.h"

#include "automation/text.h"
#include "classes/registration.h"
#include "own_modules.h"

namespace host {

namespace {

using classes::Registered_Class;
using classes::Scope;

void Print(const Registered_Class& entry, std::ostream& out) {
    out << automation::To_UTF8(entry.Program_Identity) << '\t'
        << (entry.Where == Scope::User ? "user" : "machine") << '\t' << entry.Threading_Model << '\t'
        << entry.Module << '\t' << (entry.Problem.empty() ? "ok" : entry.Problem) << '\n';
}

bool Explain(const std::string& name, std::ostream& out) {
    const auto program_identity = automation::From_UTF8_Replacing(name);
    for (const auto& entry : classes::Registered_Classes())
        if (automation::Equal_Ignoring_Case(entry.Program_Identity, program_identity))
            Print(entry, out);
    const auto problem = classes::Explain(program_identity);
    out << name << ": " << (problem ? "cannot be created: " + *problem : "can be created") << '\n';
    return !problem;
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
                throw Start_Error("nothing of " + module + " is registered in " + classes::Hive_Path(scope));
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
