#include "toolkit/snapshot.h"

namespace toolkit {

Control_Snapshot Held_By(const Control& control) {
    Control_Snapshot seen;
    seen.Enabled = control.Enabled();
    seen.Visible = control.Visible();
    seen.Place = control.Place();
    seen.Caption = control.Caption();
    if (const auto* option = dynamic_cast<const Option_Button*>(&control))
        seen.Value = option->Value();
    if (const auto* field = dynamic_cast<const Text_Control*>(&control)) {
        seen.Text = field->Text();
        seen.Caret = field->Is_Editable() ? field->Selection_Start() : 0;
    }
    if (const auto* list = dynamic_cast<const List_Control*>(&control)) {
        seen.Index = list->Selected_Index();
        seen.Count = list->Count();
    }
    return seen;
}

Form_Snapshot Held_By(const Form& form) {
    const Control* const focused = form.Focused();
    return {form.Caption(), form.Place(), focused ? focused->Name() : String()};
}

} // namespace toolkit
