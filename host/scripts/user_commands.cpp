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

Refusal Type(Hands& hands, Form& form, Control& control, String_View text) {
    Refusal refusal = hands.Enter_Text(control);
    while (!refusal && !text.empty() && form.Is_Visible())
        refusal = hands.Type(control, Take_Character(text));
    return refusal;
}

// Before the first character there is nothing left to delete, however large the count.
bool Has_Text_Before_Caret(const Control& control) {
    const auto* field = dynamic_cast<const Text_Control*>(&control);
    return field && field->Selection_Start() > 0;
}

Refusal Backspace(Hands& hands, Form& form, Control& control, Long count) {
    Refusal refusal = hands.Enter_Text(control);
    for (; !refusal && count > 0 && form.Is_Visible() && Has_Text_Before_Caret(control); --count)
        refusal = hands.Backspace(control);
    return refusal;
}

Refusal Perform_On(Hands& hands, Form& form, Control& control, const Command& command) {
    const auto& arguments = command.Arguments;
    switch (command.Action) {
    case Verb::Focus:
        return hands.Focus(control);
    case Verb::Type:
        return Type(hands, form, control, arguments[1].Text);
    case Verb::Paste:
        return hands.Replace(control, 0, String::npos, arguments[1].Text);
    case Verb::Insert:
        return hands.Replace(control, static_cast<std::size_t>(arguments[1].Number), 0, arguments[2].Text);
    case Verb::Backspace:
        return Backspace(hands, form, control, arguments.size() > 1 ? arguments[1].Number : 1);
    case Verb::Pick:
        return hands.Pick(control, arguments[1].Number);
    case Verb::Click:
        return hands.Press(control);
    default:
        return u"this is no command for a control";
    }
}

} // namespace

Refusal Perform_On(Hands& hands, Form& form, const Command& command) {
    const auto keep = form.shared_from_this();
    if (command.Action == Verb::Key)
        return hands.Press_Key(form, static_cast<user_input::Key>(command.Arguments[0].Number));
    if (command.Action == Verb::Close)
        return hands.Close(form);
    Control* control = form.Find(command.Control());
    if (!control)
        return u"the dialog has no control " + String(command.Control());
    return Perform_On(hands, form, *control, command);
}

} // namespace host
