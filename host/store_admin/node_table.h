// Tables of nodes for a person.
#pragma once

#include <ostream>

#include "bulk_edit/node_records.h"
#include "transcript/job.h"

namespace host {

// The first row is the head.
using Row = std::vector<std::string>;
void Print(const std::vector<Row>& rows, std::ostream& out);

// Null is an empty cell; a long text is cut.
std::string Cell(const Stored& value);

using Names = std::vector<std::pair<String, String>>; // of identifiers
// "Standard (7)", or the identifier alone.
std::string Named(const Stored& value, const Names& names);
Names Type_Names();

Nodes Nodes_Of(const Job& partition);

} // namespace host
