#include "node_table.h"

#include <algorithm>

#include "automation/number.h"
#include "automation/text.h"
#include "bulk_edit/dialog_answers.h"
#include "process/visible_text.h"

namespace host {

namespace {

constexpr std::size_t Most_Shown = 60; // characters of a cell

// As it is seen: a lead byte begins a character.
std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

} // namespace

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

std::string Cell(const Stored& value) {
    if (!value)
        return "";
    const bool is_long = value->size() > Most_Shown;
    return value->empty() ? "\"\"" : Visible(value->substr(0, Most_Shown)) + (is_long ? "..." : "");
}

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

Nodes Nodes_Of(const Job& partition) {
    return Partition_Work(partition.Config_ID, partition.Partition_ID, Partition_Work::Access::To_Read)
        .Read();
}

} // namespace host
