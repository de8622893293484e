// What the dialog says to texts: its own fields, lists and options judge them, in a dialog that nobody sees.
//
// The store has to be open; nothing is saved, and no node is read: one of its values may be what nobody could
// open. Everything comes on one thread.
#pragma once

#include <array>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "transcript/job.h"

namespace host {

// A text that somebody wants in a control. A threshold is its identifier, a supervised type (fraSupervised)
// its number.
struct Question {
    String Control;
    String Text;
    friend bool operator<(const Question& left, const Question& right) {
        return std::tie(left.Control, left.Text) < std::tie(right.Control, right.Text);
    }
};

constexpr std::size_t Supervised_Types = 5;

struct Dialog_Answers {
    std::map<Question, String> Refusals; // the rule, for a person; what is not in it is accepted
    std::map<String, String> Labels;     // accepted labels, as they are to be stored
    std::array<String, Supervised_Types> Type_Captions;
    std::vector<std::pair<String, String>> Thresholds; // identifiers and names, in the list's order
};

// `place` is the partition. The dialog opens also without questions. Throws Start_Error when it does
// not open.
Dialog_Answers Ask_Dialog(const Job& place, const std::set<Question>& questions);

} // namespace host
