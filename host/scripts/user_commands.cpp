#include "user_commands.h"

namespace host {

namespace {

using namespace toolkit;
using user_input::Refusal;

String_View Take_Character(String_View& text) {
    const bool pair = text.size() > 1 && (text[0] & 0xFC00U) == 0xD800 && (text[1] & 0xFC00U) == 0xDC00;
    const String_View character = text.substr(0, pair ? 2 : 1);
    text.remove_prefix(character.size());
    return character;
}

Refusal Type(Input_Driver& driver, Form& form, Control& control, String_View text) {
    Refusal refusal = driver.Enter_Text(control);
    while (!refusal && !text.empty() && form.Is_Visible())
        refusal = driver.Type(control, Take_Character(text));
    return refusal;
}

// Before the first character there is nothing left to delete, however large the count.
bool Has_Text_Before_Caret(const Control& control) {
    const auto* field = dynamic_cast<const Text_Control*>(&control);
    return field && field->Selection_Start() > 0;
}

Refusal Backspace(Input_Driver& driver, Form& form, Control& control, Long count) {
    Refusal refusal = driver.Enter_Text(control);
    for (; !refusal && count > 0 && form.Is_Visible() && Has_Text_Before_Caret(control); --count)
        refusal = driver.Backspace(control);
    return refusal;
}

Refusal Perform_On(Input_Driver& driver, Form& form, Control& control, const Command& command) {
    const auto& arguments = command.Arguments;
    switch (command.Action) {
    case Verb::Focus:
        return driver.Focus(control);
    case Verb::Type:
        return Type(driver, form, control, arguments[1].Text);
    case Verb::Paste:
        return driver.Replace(control, 0, String::npos, arguments[1].Text);
    case Verb::Insert:
        return driver.Replace(control, static_cast<std::size_t>(arguments[1].Number), 0, arguments[2].Text);
    case Verb::Backspace:
        return Backspace(driver, form, control, arguments.size() > 1 ? arguments[1].Number : 1);
    case Verb::Pick:
        return driver.Pick(control, arguments[1].Number);
    case Verb::Click:
        return driver.Press(control);
    default:
        return u"this is no command for a control";
    }
}

} // namespace

Refusal Perform_On(Input_Driver& driver, Form& form, const Command& command) {
    const auto keep = form.shared_from_this();
    if (command.Action == Verb::Key)
        return driver.Press_Key(form, static_cast<user_input::Key>(command.Arguments[0].Number));
    if (command.Action == Verb::Close)
        return driver.Close(form);
    Control* control = form.Find(command.Control());
    if (!control)
        return u"the dialog has no control " + String(command.Control());
    return Perform_On(driver, form, *control, command);
}

} // namespace host
