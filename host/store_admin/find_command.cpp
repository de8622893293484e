#include <algorithm>

#include "automation/number.h"
#include "automation/text.h"
#include "node_table.h"
#include "process/errors.h"
#include "process/visible_text.h"
#include "run_setup/store_session.h"
#include "store_admin/store_commands.h"

namespace host {

namespace {

// The retrieve string of the node's own type.
Stored Retrieve_String(const Node& node) {
    const auto type = node.Type();
    const auto& record = node.Records[type.value_or(interfaces::Node_Record)];
    return type && *type != interfaces::Node_Record && record ? (*record)[detail_value::Retrieve] : Stored();
}

// `text` is folded.
bool Holds(const Node& node, const String& text) {
    const Values& own = node.Own();
    const Stored number = automation::Decimal_Text(node.Number);
    for (const Stored& value :
         {number, own[node_value::Label], own[node_value::Entry_Label], own[node_value::Transfer],
          own[node_value::Disconnection], Retrieve_String(node)})
        if (value && automation::Case_Folded(*value).find(text) != String::npos)
            return true;
    return false;
}

class Find_Command final : public Subcommand {
    Outline About() const override {
        return {"store find", "List the nodes whose number, label or dial strings hold a text"};
    }

    void Declare(Options& options) override {
        options.Argument("TEXT", text, "What the node holds; large and small letters alike");
        Declare_Store(options, common.Store);
        Declare_Partition(options, place);
    }

    int Run(const Streams& streams) override { return Find(streams) ? status::OK : status::Refused; }

    bool Find(const Streams& streams) const {
        return With_Store(common, streams, [&] {
            const Nodes nodes = Nodes_Of(place);
            if (nodes.empty())
                return Tell_Of_No_Nodes(place, streams);
            const String wanted = automation::From_UTF8_Replacing(text);
            const Names types = Type_Names();
            std::vector<Row> rows{{"Node", "Label", "Type", "Transfer", "Disconnect", "Retrieve"}};
            for (const auto& [number, node] : nodes)
                if (Holds(node, automation::Case_Folded(wanted)))
                    rows.push_back(
                        {std::to_string(number), Cell(node.Own()[node_value::Label]),
                         Named(node.Own()[node_value::Type], types), Cell(node.Own()[node_value::Transfer]),
                         Cell(node.Own()[node_value::Disconnection]), Cell(Retrieve_String(node))});
            if (rows.size() > 1)
                Print(rows, streams.Out);
            else
                streams.Errors << "style-editor: no node of " << Place_Of(place) << " holds \""
                               << Visible(wanted) << "\" in its number, label or dial strings" << std::endl;
            return rows.size() > 1;
        });
    }

    Common_Options common; // the store
    Job place;
    std::string text;
};

} // namespace

std::unique_ptr<Subcommand> Make_Find_Command() {
    return std::make_unique<Find_Command>();
}

} // namespace host
