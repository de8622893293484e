#include "dialog/fields.h"

#include "automation/number.h"
#include "automation/text.h"

namespace dialog {

using automation::Integer;
using automation::Is_Numeric;
using automation::Long;
using automation::String;
using automation::String_View;

namespace {

// Lengths are 16-bit counts: a longer text is an overflow.
Integer Length_Of(const toolkit::Text_Control& field) {
    return automation::To_Integer(static_cast<double>(field.Text().size()));
}

// The character at a 1-based position; none behind the end.
String_View Character_At(const toolkit::Text_Control& field, Integer position) {
    const String_View text = field.Text();
    const auto index = static_cast<std::size_t>(position - 1);
    return index < text.size() ? text.substr(index, 1) : String_View{};
}

bool Is_One_Of(String_View character, String_View set) {
    return !character.empty() && set.find(character) != String_View::npos;
}

// The write may run the field's own handler, which may replace what `text` looks at.
void Write(toolkit::Text_Control& field, String_View text) {
    const String kept(text);
    field.Set_Text(kept);
}

void Trim(toolkit::Text_Control& field) {
    Write(field, automation::Trim_Right(field.Text()));
    Write(field, automation::Trim_Left(field.Text()));
    field.Set_Selection_Start(field.Text().size());
}

void Remember(toolkit::Text_Control& field, String& last_accepted, toolkit::Control& apply) {
    if (field.Text() == last_accepted)
        return;
    last_accepted = field.Text();
    apply.Set_Enabled(true);
}

void Accept_Empty(toolkit::Text_Control& field, String& last_accepted, toolkit::Control& apply) {
    last_accepted.clear();
    Write(field, last_accepted);
    apply.Set_Enabled(true);
}

constexpr Integer Longest_Dial_Text = 7;
constexpr Integer Longest_Label = 30;
constexpr String_View Dial_Signs = u",#!*";

String At_Most(Integer longest) {
    return u"at most " + automation::Decimal_Text(longest) + u" characters";
}

} // namespace

String Numeric_Field::Rule() const {
    return u"a number from " + String(rule.Minimum) + u" to " + automation::Decimal_Text(rule.Upper_Bound) +
           u", " + At_Most(rule.Longest);
}

void Numeric_Field::Changed() {
    Trim(box);
    if (box.Text().empty())
        return Accept_Empty(box, last_accepted, apply);
    const Integer length = Length_Of(box);
    if (length > rule.Longest)
        return Write(box, last_accepted);
    if (!Is_Numeric(box.Text()))
        return Restore_After_Non_Numeric(static_cast<std::size_t>(length));
    if (Exceeds_Upper_Bound())
        Write(box, automation::Decimal_Text(rule.Upper_Bound));
    if (Is_One_Of(Character_At(box, length), u"+-,."))
        return Write(box, rule.Minimum);
    Remember(box, last_accepted, apply);
}

bool Numeric_Field::Exceeds_Upper_Bound() const {
    const Long value = rule.Bound_Width == Numeric_Rule::Width::Bits_16 ? automation::To_Integer(box.Text())
                                                                        : automation::To_Long(box.Text());
    return value > rule.Upper_Bound;
}

void Numeric_Field::Restore_After_Non_Numeric(std::size_t rejected_length) {
    Write(box, last_accepted);
    const bool at_end = rule.After_Non_Numeric == Numeric_Rule::Caret::End_Of_Restored;
    box.Set_Selection_Start(at_end ? box.Text().size() : rejected_length);
}

void Numeric_Field::Left() {
    if (box.Text().empty() || Is_Below_Minimum())
        Write(box, rule.Minimum);
}

bool Numeric_Field::Is_Below_Minimum() const {
    if (rule.On_Leave == Numeric_Rule::Leave::Text_Before_Minimum)
        return box.Text() < rule.Minimum; // by code units: "05" and "-3" stand before "1", "12" does not
    if (!Is_Numeric(box.Text()))
        return false;
    const double value = rule.Leave_Width == Numeric_Rule::Width::Bits_16 ? automation::To_Integer(box.Text())
                                                                          : automation::To_Long(box.Text());
    return value < automation::To_Double(rule.Minimum);
}

String Dial_Field::Rule() {
    return At_Most(Longest_Dial_Text) + u", a digit or one of " + String(Dial_Signs) + u" as the last";
}

void Dial_Field::Changed() {
    Trim(box);
    if (box.Text().empty())
        return Accept_Empty(box, last_accepted, apply);
    const Integer length = Length_Of(box);
    if (length > Longest_Dial_Text)
        return Write(box, last_accepted);
    const String_View last = Character_At(box, length);
    if (Is_Numeric(box.Text())) {
        if (last == u".")
            return Write(box, last_accepted);
    } else if (!Is_One_Of(last, Dial_Signs) && !Is_Numeric(last)) {
        Write(box, last_accepted);
        box.Set_Selection_Start(box.Text().size());
        return;
    }
    Remember(box, last_accepted, apply);
}

String Label_Field::Rule() {
    return At_Most(Longest_Label);
}

void Label_Field::Changed() {
    if (box.Text().size() > std::size_t{Longest_Label}) {
        Write(box, last_accepted);
        box.Set_Selection_Start(box.Text().size());
        return;
    }
    Remember(box, last_accepted, apply);
}

} // namespace dialog
