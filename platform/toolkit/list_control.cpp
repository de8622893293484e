#include <algorithm>

#include "automation/text.h"
#include "toolkit/form.h"

namespace toolkit {

using automation::Long;

const String& Text_Control::Text() const {
    (void)Place(); // Form_Gone
    return text;
}

void Text_Control::Set_Text(String_View value) {
    Begin_Write();
    if (!Is_Editable())
        automation::Raise(automation::run_time::Invalid_Property_Value);
    if (value != text)
        User_Edit(value, 0);
}

void Text_Control::User_Edit(String_View value, std::size_t position) {
    if (value == text)
        return Set_Selection_Start(position);
    Text_Edited();
    Replace_Text(value, position);
    Raise(On_Change);
}

void Text_Control::Replace_Text(String_View value, std::size_t position) {
    const bool changed = text != value;
    text = value;
    const std::size_t wanted = std::min(position, text.size());
    const bool moved = std::exchange(caret, wanted) != wanted;
    if (changed)
        Notify(Property::Text); // the caret included
    else if (moved)
        Notify(Property::Caret);
}

std::size_t Text_Control::Selection_Start() const {
    (void)Place(); // Form_Gone
    return caret;
}

void Text_Control::Set_Selection_Start(std::size_t position) {
    Begin_Write();
    const std::size_t wanted = std::min(position, text.size());
    if (std::exchange(caret, wanted) != wanted)
        Notify(Property::Caret);
}

const List_Control::Entry& List_Control::At(Long index) const {
    (void)Place(); // Form_Gone
    if (index < 0 || index >= Count())
        automation::Raise(automation::run_time::Invalid_Property_Index);
    return entries[static_cast<std::size_t>(index)];
}

void List_Control::Add_Item(String item) {
    Begin_Write();
    auto at = entries.end();
    if (sorted) {
        const String folded = automation::Case_Folded(item);
        at = std::find_if(entries.begin(), entries.end(),
                          [&](const Entry& entry) { return automation::Case_Folded(entry.Text) > folded; });
    }
    newest = static_cast<Long>(at - entries.begin());
    entries.insert(at, Entry{std::move(item)});
    if (selected >= newest)
        ++selected;
    Notify(Property::Items);
}

void List_Control::Clear() {
    Begin_Write();
    newest = -1;
    selected = -1;
    Replace_Text({}, 0);
    if (entries.empty())
        return;
    entries.clear();
    Notify(Property::Items);
}

Long List_Control::Count() const {
    (void)Place(); // Form_Gone
    return static_cast<Long>(entries.size());
}

const String& List_Control::Item(Long index) const {
    return At(index).Text;
}
Long List_Control::Item_Data(Long index) const {
    return At(index).Data;
}

void List_Control::Set_Item_Data(Long index, Long data) {
    Begin_Write();
    (void)At(index);
    entries[static_cast<std::size_t>(index)].Data = data;
}

Long List_Control::New_Index() const {
    (void)Place(); // Form_Gone
    return newest;
}

Long List_Control::Selected_Index() const {
    (void)Place(); // Form_Gone
    return selected;
}

void List_Control::Set_Selected_Index(Long index) {
    Begin_Write();
    if (index < -1 || index >= Count())
        automation::Raise(automation::run_time::Invalid_Property_Value);
    const String& shown = index < 0 ? String() : entries[static_cast<std::size_t>(index)].Text;
    const bool moved = std::exchange(selected, index) != index;
    if (Is_Editable())
        Replace_Text(shown, shown.size());
    if (moved)
        Notify(Property::Index);
    Raise(On_Click);
}

// What is typed or written is no entry any more, even when the texts are equal.
void List_Control::Text_Edited() {
    if (std::exchange(selected, -1) != -1)
        Notify(Property::Index);
}

static const String& Selected_Text(const List_Control& list) {
    static const String none;
    return list.Selected_Index() < 0 ? none : list.Item(list.Selected_Index());
}

const String& Combo_Box::Text() const {
    return Is_Editable() ? Text_Control::Text() : Selected_Text(*this);
}
const String& List_Box::Text() const {
    return Selected_Text(*this);
}

} // namespace toolkit
