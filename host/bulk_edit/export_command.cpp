#include "bulk_edit/bulk_commands.h"

#include "bulk_edit/node_records.h"
#include "process/errors.h"
#include "process/text_file.h"
#include "run_setup/store_session.h"
#include "spreadsheet.h"

namespace host {

namespace {

class Export_Command final : public Subcommand {
    Outline About() const override {
        return {"store export", "Print the nodes of a partition, to be edited"};
    }

    void Declare(Options& options) override {
        Declare_Store(options, common.Store);
        Declare_Partition(options, place);
        options.Flag("--csv", as_spreadsheet, "As a spreadsheet instead of JSON Lines");
        options.Text("--out", file, "FILE", "A new file instead of standard output");
    }

    int Run(const Streams& streams) override {
        const bool found = With_Store(common, streams, [&] {
            const Nodes nodes =
                Partition_Work(place.Config_ID, place.Partition_ID, Partition_Work::Access::To_Read).Read();
            if (nodes.empty())
                return Tell_Of_No_Nodes(place, streams);
            Write(as_spreadsheet ? Spreadsheet_Of(nodes) : Lines_Of(nodes), streams);
            return true;
        });
        return found ? status::OK : status::Refused;
    }

    static std::string Lines_Of(const Nodes& nodes) {
        std::string lines;
        for (const auto& [number, node] : nodes)
            lines += JSON_Of(node) + "\n";
        return lines;
    }

    void Write(const std::string& text, const Streams& streams) const {
        if (file)
            Write_New_File(*file, text);
        else if (!(streams.Out << text << std::flush))
            throw Start_Error("the nodes could not be written; check where standard output goes");
    }

    Common_Options common; // the store
    Job place;
    std::optional<std::string> file;
    bool as_spreadsheet = false;
};

} // namespace

std::unique_ptr<Subcommand> Make_Export_Command() {
    return std::make_unique<Export_Command>();
}

} // namespace host
