// The nodes of a partition as a spreadsheet (RFC 4180, UTF-8), one row a node.
//
// The first line names the columns: "NodeNumber", "Change", the values of the node's record, and those of its
// detail records as "Full.RingOn". An empty cell stands for a null, for a record that the node does not have,
// and, because spreadsheets keep no quotes, for an empty text. Pure functions.
#pragma once

#include "bulk_edit/node_records.h"

namespace host {

std::string Spreadsheet_Of(const Nodes& nodes);

// The text is a spreadsheet's rather than JSON Lines.
bool Is_Spreadsheet(const std::string& file, std::string_view text);

// What a row asks for, or why it is none.
struct Spreadsheet_Row {
    std::size_t Line; // at which it begins
    std::optional<Wanted_Node> Node;
    std::string Problem;
};

// A semicolon separates the cells where the first line has no comma. Rows of empty cells are left out.
std::vector<Spreadsheet_Row> Parse_Spreadsheet(std::string_view text);

// An empty cell asks for nothing where there is nothing. Elsewhere it is an empty text, and a detail record
// whose cells are all empty goes.
void Settle_Empty_Cells(Wanted_Node& wanted, const Node& stored);

} // namespace host
