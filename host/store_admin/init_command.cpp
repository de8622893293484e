#include "process/errors.h"
#include "process/visible_text.h"
#include "run_setup/run_options.h"
#include "run_setup/store_choice.h"
#include "store_admin/store_commands.h"

namespace host {

namespace {

class Init_Command final : public Subcommand {
    Outline About() const override { return {"store init", "Create the store's tables and its sample data"}; }

    void Declare(Options& options) override {
        Declare_Store(options, store);
        options.Number<int>("--nodes", nodes, 0, interfaces::Most_Nodes,
                            "Make the default node and nodes 1 to N instead of the sample's");
    }

    int Run(const Streams& streams) override {
        const std::string name = Create_Store(store, nodes);
        streams.Out << "created the store " << Visible_Text(name) << '\n';
        Require_Written(streams, "the store was created, but ");
        return status::OK;
    }

    std::optional<std::string> store;
    std::optional<int> nodes;
};

} // namespace

std::unique_ptr<Subcommand> Make_Init_Command() {
    return std::make_unique<Init_Command>();
}

} // namespace host
