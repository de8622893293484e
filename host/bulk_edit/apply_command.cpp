#include "apply_job.h"
#include "bulk_edit/bulk_commands.h"
#include "process/errors.h"
#include "run_setup/store_session.h"

namespace host {

namespace {

class Apply_Command final : public Subcommand {
    Outline About() const override {
        return {"store apply", "Change nodes as an edited export says, all or none"};
    }

    void Declare(Options& options) override {
        options.Argument("FILE", wanted.File, "The edited export, JSON Lines or CSV; - is standard input");
        Declare_Store(options, wanted.Common.Store);
        Declare_Partition(options, wanted.Place);
        Declare_Care(options, wanted.Dry_Run, wanted.Force);
    }

    int Run(const Streams& streams) override { return Apply(wanted, streams) ? status::OK : status::Refused; }

    Apply_Options wanted;
};

} // namespace

std::unique_ptr<Subcommand> Make_Apply_Command() {
    return std::make_unique<Apply_Command>();
}

} // namespace host
