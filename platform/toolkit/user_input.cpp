#include "toolkit/user_input.h"

#include "automation/number.h"

#include <algorithm>

namespace toolkit::user_input {

namespace {

bool Is_Lead(char16_t unit) {
    return (unit & 0xFC00U) == 0xD800;
}
bool Is_Trail(char16_t unit) {
    return (unit & 0xFC00U) == 0xDC00;
}

// Runs a verb; the form stays alive meanwhile, and a form that goes ends the verb.
template <typename Verb>
Refusal Perform(Form& form, Verb verb) {
    const auto keep = form.shared_from_this();
    if (!form.Is_Loaded() || !form.Is_Visible())
        return u"no dialog is up";
    try {
        return verb();
    } catch (const Form_Gone&) {
        return {};
    }
}

Refusal Unreachable(const Control& control) {
    if (!control.Takes_Focus())
        return control.Name() + u" takes no focus";
    for (const Control* outer = &control; outer; outer = outer->Container()) {
        if (!outer->Visible())
            return control.Name() + u" is invisible";
        if (!outer->Enabled())
            return control.Name() + u" is disabled";
    }
    return {};
}

Refusal Take_Focus(Control& control) {
    if (auto refusal = Unreachable(control))
        return refusal;
    if (control.Owner_Form().Focused() != &control)
        control.Owner_Form().User_Move_Focus(control);
    return {};
}

// Acts on the control once it has the focus, unless a handler that the move ran has switched it off.
template <typename Action>
Refusal Act_With_Focus(Control& control, Action action) {
    if (auto refusal = Take_Focus(control))
        return refusal;
    if (control.Is_Reachable())
        action();
    return {};
}

// A verb on a field whose text a person can edit.
template <typename Verb>
Refusal Perform_On_Text(Control& control, Verb verb) {
    return Perform(control.Owner_Form(), [&]() -> Refusal {
        auto* field = dynamic_cast<Text_Control*>(&control);
        if (!field || !field->Is_Editable())
            return control.Name() + u" takes no text";
        if (auto refusal = Unreachable(control))
            return refusal;
        return verb(*field);
    });
}

void Change(Text_Control& field, std::size_t start, std::size_t length, String_View inserted) {
    String text = field.Text();
    start = std::min(start, text.size());
    text.replace(start, std::min(length, text.size() - start), inserted);
    field.User_Edit(text, start + inserted.size());
}

} // namespace

Refusal Focus(Control& control) {
    return Perform(control.Owner_Form(), [&] { return Take_Focus(control); });
}

Refusal Enter_Text(Control& control) {
    return Perform_On_Text(control, [](Text_Control& field) -> Refusal {
        if (field.Owner_Form().Focused() == &field)
            return {};
        return Act_With_Focus(field, [&] { field.Set_Selection_Start(field.Text().size()); });
    });
}

Refusal Type(Control& control, String_View text) {
    return Perform_On_Text(control, [&](Text_Control& field) -> Refusal {
        Change(field, field.Selection_Start(), 0, text);
        return {};
    });
}

Refusal Backspace(Control& control) {
    return Perform_On_Text(control, [](Text_Control& field) -> Refusal {
        const std::size_t caret = field.Selection_Start();
        if (caret == 0)
            return {};
        const String& text = field.Text();
        const bool pair = caret >= 2 && Is_Trail(text[caret - 1]) && Is_Lead(text[caret - 2]);
        const std::size_t length = pair ? 2 : 1;
        Change(field, caret - length, length, {});
        return {};
    });
}

Refusal Replace(Control& control, std::size_t start, std::size_t length, String_View text) {
    return Perform_On_Text(control, [&](Text_Control& field) -> Refusal {
        return Act_With_Focus(field, [&] { Change(field, start, length, text); });
    });
}

Refusal Edit(Control& control, String_View text, std::size_t caret) {
    return Perform_On_Text(control, [&](Text_Control& field) -> Refusal {
        field.User_Edit(text, caret);
        return {};
    });
}

Refusal Pick(Control& control, automation::Long index) {
    return Perform(control.Owner_Form(), [&]() -> Refusal {
        auto* list = dynamic_cast<List_Control*>(&control);
        if (!list)
            return control.Name() + u" has no list";
        if (auto refusal = Unreachable(control))
            return refusal;
        if (index < 0 || index >= list->Count())
            return control.Name() + u" has no entry " + automation::Decimal_Text(index);
        return Act_With_Focus(control, [&] {
            if (index < list->Count())
                list->User_Pick(index);
        });
    });
}

Refusal Press(Control& control) {
    return Perform(control.Owner_Form(), [&]() -> Refusal {
        auto* button = dynamic_cast<Command_Button*>(&control);
        auto* option = dynamic_cast<Option_Button*>(&control);
        if (!button && !option)
            return control.Name() + u" cannot be clicked";
        return Act_With_Focus(control, [&] { button ? button->User_Press() : option->User_Select(); });
    });
}

Refusal Press_Key(Form& form, Key key) {
    return Perform(form, [&]() -> Refusal {
        Control* const focused = form.Focused();
        if (key == Key::Tab) {
            Control* const next = form.Next_Tab_Stop(focused);
            return next ? Take_Focus(*next) : Refusal(u"nothing takes the focus");
        }
        auto* button = dynamic_cast<Command_Button*>(focused);
        if (key == Key::Escape || !button)
            button = key == Key::Enter ? form.Default_Button() : form.Cancel_Button();
        if (!button)
            return u"no button answers the key";
        if (auto refusal = Unreachable(*button))
            return refusal;
        button->User_Press();
        return {};
    });
}

Refusal Close(Form& form) {
    return Perform(form, [&]() -> Refusal {
        form.Unload();
        return {};
    });
}

} // namespace toolkit::user_input
