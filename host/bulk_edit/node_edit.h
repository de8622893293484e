// One node's edit in three steps, each of which answers a value: what a line asks for laid over what is
// stored; what the rules of the dialog and the save refuse of it; and the node completed as the save would.
// Pure functions.
//
// Values that the line leaves out stay. A new supervised type takes the former one's detail values along, as
// the dialog does, and the former record goes.
#pragma once

#include <set>

#include "bulk_edit/dialog_answers.h"
#include "bulk_edit/node_records.h"

namespace host {

// What is stored and what is to be. Before outlives it.
struct Node_Edit {
    const Node* Before;
    Node After;
};

Node_Edit Merge(const Node& before, const Wanted_Node& wanted);

// Adds what the dialog has to be asked about the edit.
void Ask(const Node_Edit& edit, std::set<Question>& questions);

// What is refused, and the rule; one for each mistake.
std::vector<std::string> Refusals_Of(const Node_Edit& edit, const Wanted_Node& wanted,
                                     const Dialog_Answers& answers);

// The edit with what follows from it: the prepared label, the type's caption, the entry in the node list. A
// line that changes nothing leaves everything as it was.
Node_Edit Complete(Node_Edit edit, const Wanted_Node& wanted, const Dialog_Answers& answers);

// `Full.RingOn "2000" -> "1000"`, without the time of the change; empty when nothing changes.
std::vector<std::string> Changes_Of(const Node_Edit& edit);

} // namespace host
