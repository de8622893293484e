#include "automation/text.h"
#include "class_admin/class_commands.h"
#include "classes/class_table.h"
#include "explained.h"
#include "process/visible_text.h"
#include "run_setup/bundled_modules.h"

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
        return static_cast<bool>(classes::Create_Underlying(program_identity));
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

class List_Command final : public Subcommand {
    Outline About() const override {
        return {"list", "List registered classes, or say why one is not found"};
    }

    void Declare(Options& options) override {
        options.Arguments("PROGID", wanted, "Explain these classes instead", Options::Needed::No);
    }

    int Run(const Streams& streams) override {
        bool all_found = false;
        Print_Visibly(streams.Out, [&](std::ostream& out) { all_found = List(out); });
        return all_found ? status::OK : status::Class_Not_Found;
    }

    // False when a class that was asked for cannot be created.
    bool List(std::ostream& out) const {
        Offer_Bundled_Modules();
        return Explained([&] {
            bool all_found = true;
            for (const std::string& name : wanted)
                all_found = Explain(name, out) && all_found;
            if (wanted.empty())
                for (const auto& entry : classes::Registered_Classes())
                    Print(entry, out);
            return all_found;
        });
    }

    std::vector<std::string> wanted; // none: all that are registered
};

} // namespace

std::unique_ptr<Subcommand> Make_List_Command() {
    return std::make_unique<List_Command>();
}

} // namespace host
