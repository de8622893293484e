#include "history_entries.h"
#include "process/errors.h"
#include "process/visible_text.h"
#include "run_setup/store_choice.h"
#include "store_admin/store_commands.h"

namespace host {

namespace {

class Upgrade_Command final : public Subcommand {
    Outline About() const override {
        return {"store upgrade", "Bring an older store up to this program's layout"};
    }

    void Declare(Options& options) override { Declare_Store(options, store); }

    int Run(const Streams& streams) override try {
        automation::Text name;
        automation::Call(History(), &Store_History::Upgrade, Store_Location(store), name);
        streams.Out << "the store " << Visible(name.View()) << " is up to date\n";
        Require_Written(streams, "the store is up to date, but ");
        return status::OK;
    } catch (const automation::Failure& failure) {
        Give_Up(failure);
    }

    std::optional<std::string> store;
};

} // namespace

std::unique_ptr<Subcommand> Make_Upgrade_Command() {
    return std::make_unique<Upgrade_Command>();
}

} // namespace host
