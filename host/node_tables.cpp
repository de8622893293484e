#include "node_tables.h"

#include <algorithm>
#include <set>

#include "automation/number.h"
#include "automation/text.h"
#include "dialog_answers.h"
#include "node_records.h"
#include "store_answers.h"
#include "visible_text.h"

namespace host {

namespace {

constexpr std::size_t Own = interfaces::Node_Record;
constexpr std::size_t Most_Shown = 60; // characters of a cell

using Row = std::vector<std::string>;

// As it is seen: a lead byte begins a character.
std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

void Print(const std::vector<Row>& rows, std::ostream& out) {
    std::vector<std::size_t> widths(rows.front().size());
    for (const Row& row : rows)
        for (std::size_t at = 0; at < row.size(); ++at)
            widths[at] = std::max(widths[at], Width(row[at]));
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t at = 0; at < row.size(); ++at)
            line += row[at] + std::string(widths[at] - Width(row[at]) + 2, ' ');
        out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
    }
}

// Null is an empty cell.
std::string Cell(const Stored& value) {
    if (!value)
        return "";
    const bool is_long = value->size() > Most_Shown;
    return value->empty() ? "\"\"" : Visible(value->substr(0, Most_Shown)) + (is_long ? "..." : "");
}

using Names = std::vector<std::pair<String, String>>; // of identifiers

// "Standard (7)", or the identifier alone.
std::string Named(const Stored& value, const Names& names) {
    const auto found =
        std::find_if(names.begin(), names.end(), [&](const auto& name) { return value == name.first; });
    return found == names.end() ? Cell(value) : Cell(found->second) + " (" + Cell(value) + ")";
}

Names Type_Names() {
    Names names;
    for (std::size_t type = 0; type < Supervised_Types; ++type)
        names.emplace_back(automation::Decimal_Text(static_cast<Long>(type)),
                           automation::From_UTF8_Replacing(Type_Name(type)));
    return names;
}

// Without the names where the dialog cannot be opened: the rest of the node is no worse for it.
Names Threshold_Names(const Job& place) {
    try {
        return Ask_Dialog(place, {}).Thresholds;
    } catch (const Start_Error&) {
        return {};
    }
}

// The retrieve string of the node's own type.
Stored Retrieve_String(const Node& node) {
    const auto type = node.Type();
    const auto& record = node.Records[type.value_or(Own)];
    return type && *type != Own && record ? (*record)[detail_value::Retrieve] : Stored();
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

Nodes Nodes_Of(const Job& place) {
    return Partition_Work(place.Config_ID, place.Partition_ID, Partition_Work::Access::To_Read).Read();
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

} // namespace

bool Find_Nodes(const Find_Command& command, const Streams& streams) {
    return With_Store(command.Common, streams, [&] {
        const Nodes nodes = Nodes_Of(command.Place);
        if (nodes.empty())
            return Tell_Of_No_Nodes(command.Place, streams);
        const String wanted = automation::From_UTF8_Replacing(command.Text);
        const Names types = Type_Names();
        std::vector<Row> rows{{"Node", "Label", "Type", "Transfer", "Disconnect", "Retrieve"}};
        for (const auto& [number, node] : nodes)
            if (Holds(node, automation::Case_Folded(wanted)))
                rows.push_back({std::to_string(number), Cell(node.Own()[node_value::Label]),
                                Named(node.Own()[node_value::Type], types),
                                Cell(node.Own()[node_value::Transfer]),
                                Cell(node.Own()[node_value::Disconnection]), Cell(Retrieve_String(node))});
        if (rows.size() > 1)
            Print(rows, streams.Out);
        else
            streams.Errors << "style-editor: no node of " << Place_Of(command.Place) << " holds \""
                           << Visible(wanted) << "\" in its number, label or dial strings" << std::endl;
        return rows.size() > 1;
    });
}

bool Show_Node(const Show_Command& command, const Streams& streams) {
    return With_Store(command.Common, streams, [&] {
        const Nodes nodes = Nodes_Of(command.Place);
        const auto node = nodes.find(command.Place.Node_Number);
        if (nodes.empty())
            return Tell_Of_No_Nodes(command.Place, streams);
        if (node == nodes.end())
            streams.Errors << "style-editor: node " << command.Place.Node_Number << " does not exist in "
                           << Place_Of(command.Place) << "; see style-editor store find" << std::endl;
        else
            Print(Rows_Of(node->second, Type_Names(), Threshold_Names(command.Place)), streams.Out);
        return node != nodes.end();
    });
}

} // namespace host
