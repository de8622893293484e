#include "class_admin/class_commands.h"
#include "explained.h"
#include "process/visible_text.h"
#include "run_setup/run_options.h"

namespace host {

namespace {

using classes::Scope;

// Who has it instead, for instance a package, whose manifest is not ours to take away.
std::string Other_Manifest_Of(const std::string& module) {
    for (const auto& entry : classes::Registered_Classes())
        if (entry.Module == module)
            return "; it is registered by " + entry.Manifest;
    return {};
}

class Register_Command final : public Subcommand {
public:
    enum class Way { Registers, Unregisters };
    explicit Register_Command(Way way) : removes(way == Way::Unregisters) {}

private:
    Outline About() const override {
        if (removes)
            return {"unregister", "Remove registrations of modules, which need not exist any more"};
        return {"register", "Register the classes of modules"};
    }

    void Declare(Options& options) override {
        options.Arguments("MODULE", modules, "The module's file, by its absolute path", Options::Needed::Yes);
        options.Flag("--machine", for_machine, "For every user of the machine; without it for you");
    }

    int Run(const Streams& streams) override {
        Print_Visibly(streams.Out, [&](std::ostream& out) { Register(out); });
        return status::OK;
    }

    // All modules, or none after the first that fails.
    void Register(std::ostream& out) const {
        const Scope scope = for_machine ? Scope::Machine : Scope::User;
        Explained([&] {
            for (const std::string& module : modules) {
                if (!removes) {
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

    const bool removes;
    std::vector<std::string> modules;
    bool for_machine = false; // else for this user
};

} // namespace

std::unique_ptr<Subcommand> Make_Register_Command() {
    return std::make_unique<Register_Command>(Register_Command::Way::Registers);
}

std::unique_ptr<Subcommand> Make_Unregister_Command() {
    return std::make_unique<Register_Command>(Register_Command::Way::Unregisters);
}

} // namespace host
