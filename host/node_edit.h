// One node's edit: what a line asks for against what is stored, by the rules of the dialog and the save.
//
// Values that the line leaves out stay. A new supervised type takes the former one's detail values along, as
// the dialog does, and the former record goes. Pure data.
#pragma once

#include <set>

#include "dialog_answers.h"
#include "node_records.h"

namespace host {

class Node_Edit {
public:
    // `restores`: every value is put back as it is given, without the rules.
    Node_Edit(const Node& before, const Wanted_Node& wanted, bool restores);

    // Adds what the dialog has to be asked.
    void Ask(std::set<Question>& questions) const;
    // Completes the edit, or refuses what the dialog does not take.
    void Take(const Dialog_Answers& answers);

    bool Is_Change() const { return !(After == Before); }
    // `Full.RingOn "2000" -> "1000"`
    std::vector<std::string> Changes() const;

    Node Before, After;
    std::vector<std::string> Refusals; // what is refused, and the rule

private:
    // A value that is to change.
    struct Changed_Value {
        std::size_t Kind, Index;
        const Stored* Old; // null: no record
        const Stored* New;
    };
    std::vector<Changed_Value> Changed_Values() const;
    void Merge(std::size_t kind, const Wanted_Record& wanted);
    void Check_Detail(std::size_t kind, const Wanted_Record& wanted);
    void Check_Values();
    void Drop_Former_Record(const Wanted_Node& wanted);
    void Change_Type(const Wanted_Node& wanted);
    void Complete_Entry();
    void Refuse(std::size_t kind, std::size_t index, const Stored& value, const std::string& rule);

    bool gives_entry_label = false, gives_entry_time = false;
};

} // namespace host
