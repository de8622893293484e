#include "automation/text.h"
#include "bulk_edit/dialog_answers.h"
#include "node_table.h"
#include "process/errors.h"
#include "run_setup/store_session.h"
#include "store_admin/store_commands.h"

namespace host {

namespace {

constexpr std::size_t Own = interfaces::Node_Record;

// Without the names where the dialog cannot be opened: the rest of the node is no worse for it.
Names Threshold_Names(const Job& place) {
    try {
        return Ask_Dialog(place, {}).Thresholds;
    } catch (const Start_Error&) {
        return {};
    }
}

std::vector<Row> Rows_Of(const Node& node, const Names& types, const Names& thresholds) {
    std::vector<Row> rows{{"Field", "Value", "Unit", "Name"},
                          {"Node", std::to_string(node.Number), "", "NodeNumber"}};
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind)
        for (std::size_t index = 0; node.Records[kind] && index < Values_Of_A_Record; ++index) {
            const auto& [name, control, title, unit] = Value_Names(kind)[index];
            const Stored& value = (*node.Records[kind])[index];
            if (Follows(node, kind, index) && !(kind == Own && index == node_value::Entry_Changed))
                continue;
            const bool is_type = kind == Own && index == node_value::Type;
            const bool is_threshold = kind == Own && index == node_value::Threshold;
            rows.push_back({title,
                            is_type        ? Named(value, types)
                            : is_threshold ? Named(value, thresholds)
                                           : Cell(value),
                            value ? unit : "", Full_Name(kind, index)});
        }
    rows.push_back({"Last change", Cell(node.Change), "", "Change"});
    return rows;
}

class Show_Command final : public Subcommand {
    Outline About() const override { return {"store show", "Print all values of one node"}; }

    void Declare(Options& options) override {
        Declare_Node(options, place.Node_Number, "Node; 0 for the default node", Options::Needed::Yes);
        Declare_Store(options, common.Store);
        Declare_Partition(options, place);
    }

    int Run(const Streams& streams) override { return Show(streams) ? status::OK : status::Refused; }

    bool Show(const Streams& streams) const {
        return With_Store(common, streams, [&] {
            const Nodes nodes = Nodes_Of(place);
            const auto node = nodes.find(place.Node_Number);
            if (nodes.empty())
                return Tell_Of_No_Nodes(place, streams);
            if (node == nodes.end())
                streams.Errors << "style-editor: node " << place.Node_Number << " does not exist in "
                               << Place_Of(place) << "; see style-editor store find" << std::endl;
            else
                Print(Rows_Of(node->second, Type_Names(), Threshold_Names(place)), streams.Out);
            return node != nodes.end();
        });
    }

    Common_Options common; // the store
    Job place;
};

} // namespace

std::unique_ptr<Subcommand> Make_Show_Command() {
    return std::make_unique<Show_Command>();
}

} // namespace host
