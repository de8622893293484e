// The editable fields of the dialog: what each accepts while it is typed and when it is left.
//
// Every test reads the control afresh: a write to the field runs the same handler nested inside the write,
// and what the nested run leaves is what the later steps see. The rules judge converted values; what is
// stored is the text. Rule() says it to a person.
#pragma once

#include "toolkit/control.h"

namespace dialog {

// The constants in which the eight numeric fields differ.
struct Numeric_Rule {
    enum class Width { Bits_16, Bits_32 };
    enum class Caret { Length_Of_Rejected, End_Of_Restored };
    enum class Leave { Value_Below_Minimum, Text_Before_Minimum };

    automation::Integer Longest; // code units
    Width Bound_Width;
    automation::Long Upper_Bound;
    automation::String_View Minimum; // also what a trailing sign or separator turns the field into
    Caret After_Non_Numeric;
    Leave On_Leave;
    Width Leave_Width;
};

class Numeric_Field {
public:
    Numeric_Field(toolkit::Combo_Box& box, toolkit::Control& apply, const Numeric_Rule& rule)
        : box(box), apply(apply), rule(rule) {}

    automation::String Rule() const;
    void Changed();
    void Picked() { apply.Set_Enabled(true); }
    void Left();

private:
    bool Exceeds_Upper_Bound() const;
    void Restore_After_Non_Numeric(std::size_t rejected_length);
    bool Is_Below_Minimum() const;

    toolkit::Combo_Box& box;
    toolkit::Control& apply;
    const Numeric_Rule& rule;
    automation::String last_accepted;
};

// Dial strings: digits and , # ! * judged at the end of the text, at most seven characters.
class Dial_Field {
public:
    Dial_Field(toolkit::Text_Box& box, toolkit::Control& apply) : box(box), apply(apply) {}
    static automation::String Rule();
    void Changed();

private:
    toolkit::Text_Box& box;
    toolkit::Control& apply;
    automation::String last_accepted;
};

// The node's label: any characters, at most thirty.
class Label_Field {
public:
    Label_Field(toolkit::Text_Box& box, toolkit::Control& apply) : box(box), apply(apply) {}
    static automation::String Rule();
    void Changed();

private:
    toolkit::Text_Box& box;
    toolkit::Control& apply;
    automation::String last_accepted;
};

} // namespace dialog
