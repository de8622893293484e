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

void Take_Focus(Control& control) {
    if (control.Owner_Form().Focused() != &control)
        control.Owner_Form().User_Move_Focus(control);
}

// Acts on the control once it has the focus, unless a handler that the move ran has switched it off.
template <typename Action>
void Act_With_Focus(Control& control, Action action) {
    Take_Focus(control);
    if (control.Is_Reachable())
        action();
}

// A verb, once nothing speaks against it.
template <typename Verb>
Refusal Unless(Refusal refusal, Form& form, Verb verb) {
    if (refusal)
        return refusal;
    return Perform(form, [&]() -> Refusal {
        verb();
        return {};
    });
}

// A verb on a field whose text a person can edit.
template <typename Verb>
Refusal Perform_On_Text(Control& control, Verb verb) {
    return Unless(Can_Edit(control), control.Owner_Form(),
                  [&] { verb(static_cast<Text_Control&>(control)); });
}

void Change(Text_Control& field, std::size_t start, std::size_t length, String_View inserted) {
    String text = field.Text();
    start = std::min(start, text.size());
    text.replace(start, std::min(length, text.size() - start), inserted);
    field.User_Edit(text, start + inserted.size());
}

// The button that answers the key; null when none does.
Command_Button* Button_Of(const Form& form, Key key) {
    auto* const focused = dynamic_cast<Command_Button*>(form.Focused());
    if (key == Key::Escape || !focused)
        return key == Key::Enter ? form.Default_Button() : form.Cancel_Button();
    return focused;
}

} // namespace

// What speaks against a verb

Refusal Can_Focus(Control& control) {
    return Perform(control.Owner_Form(), [&] { return Unreachable(control); });
}

Refusal Can_Edit(Control& control) {
    return Perform(control.Owner_Form(), [&]() -> Refusal {
        const auto* field = dynamic_cast<const Text_Control*>(&control);
        if (!field || !field->Is_Editable())
            return control.Name() + u" takes no text";
        return Unreachable(control);
    });
}

Refusal Can_Pick(Control& control, automation::Long index) {
    return Perform(control.Owner_Form(), [&]() -> Refusal {
        const auto* list = dynamic_cast<const List_Control*>(&control);
        if (!list)
            return control.Name() + u" has no list";
        if (auto refusal = Unreachable(control))
            return refusal;
        if (index < 0 || index >= list->Count())
            return control.Name() + u" has no entry " + automation::Decimal_Text(index);
        return {};
    });
}

Refusal Can_Press(Control& control) {
    return Perform(control.Owner_Form(), [&]() -> Refusal {
        if (control.Kind() != Control_Kind::Command_Button && control.Kind() != Control_Kind::Option_Button)
            return control.Name() + u" cannot be clicked";
        return Unreachable(control);
    });
}

Refusal Can_Press_Key(Form& form, Key key) {
    return Perform(form, [&]() -> Refusal {
        if (key == Key::Tab)
            return form.Next_Tab_Stop(form.Focused()) ? Refusal() : u"nothing takes the focus";
        const Command_Button* const button = Button_Of(form, key);
        return button ? Unreachable(*button) : u"no button answers the key";
    });
}

Refusal Can_Close(Form& form) {
    return Perform(form, []() -> Refusal { return {}; });
}

// The verbs

Refusal Focus(Control& control) {
    return Unless(Can_Focus(control), control.Owner_Form(), [&] { Take_Focus(control); });
}

Refusal Enter_Text(Control& control) {
    return Perform_On_Text(control, [](Text_Control& field) {
        if (field.Owner_Form().Focused() != &field)
            Act_With_Focus(field, [&] { field.Set_Selection_Start(field.Text().size()); });
    });
}

Refusal Type(Control& control, String_View text) {
    return Perform_On_Text(control,
                           [&](Text_Control& field) { Change(field, field.Selection_Start(), 0, text); });
}

Refusal Backspace(Control& control) {
    return Perform_On_Text(control, [](Text_Control& field) {
        const std::size_t caret = field.Selection_Start();
        if (caret == 0)
            return;
        const String& text = field.Text();
        const bool pair = caret >= 2 && Is_Trail(text[caret - 1]) && Is_Lead(text[caret - 2]);
        const std::size_t length = pair ? 2 : 1;
        Change(field, caret - length, length, {});
    });
}

Refusal Replace(Control& control, std::size_t start, std::size_t length, String_View text) {
    return Perform_On_Text(control, [&](Text_Control& field) {
        Act_With_Focus(field, [&] { Change(field, start, length, text); });
    });
}

Refusal Edit(Control& control, String_View text, std::size_t caret) {
    return Perform_On_Text(control, [&](Text_Control& field) { field.User_Edit(text, caret); });
}

Refusal Pick(Control& control, automation::Long index) {
    return Unless(Can_Pick(control, index), control.Owner_Form(), [&] {
        auto& list = static_cast<List_Control&>(control);
        Act_With_Focus(control, [&] {
            if (index < list.Count())
                list.User_Pick(index);
        });
    });
}

Refusal Press(Control& control) {
    return Unless(Can_Press(control), control.Owner_Form(), [&] {
        Act_With_Focus(control, [&] {
            if (auto* button = dynamic_cast<Command_Button*>(&control))
                button->User_Press();
            else
                static_cast<Option_Button&>(control).User_Select();
        });
    });
}

Refusal Press_Key(Form& form, Key key) {
    return Unless(Can_Press_Key(form, key), form, [&] {
        if (key == Key::Tab)
            Take_Focus(*form.Next_Tab_Stop(form.Focused()));
        else
            Button_Of(form, key)->User_Press();
    });
}

Refusal Close(Form& form) {
    return Unless(Can_Close(form), form, [&] { form.Unload(); });
}

} // namespace toolkit::user_input
