// Everything that a person can do to a form. A window and a script use the same verbs, so that a key stroke
// is the same event in both.
//
// Each verb answers why it could not be performed, or nothing. A handler that unloads the form in the middle
// of a verb ends the verb. Verbs come on the form's thread and throw nothing.
#pragma once

#include <memory>
#include <optional>

#include "toolkit/form.h"

namespace toolkit::user_input {

using Refusal = std::optional<String>;

enum class Key { Enter, Escape, Tab };

// What speaks against a verb, before it: the reasons that the verbs below give. Nothing is changed.
Refusal Can_Focus(Control& control);
Refusal Can_Edit(Control& control); // Enter_Text, Type, Backspace, Replace and Edit
Refusal Can_Pick(Control& control, automation::Long index);
Refusal Can_Press(Control& control);
Refusal Can_Press_Key(Form& form, Key key);
Refusal Can_Close(Form& form);

Refusal Focus(Control& control);
// A control that does not have the focus gets it, with the caret behind its last character.
Refusal Enter_Text(Control& control);
// Inserts at the caret, as one key does: `text` is one character. The control must have been entered.
Refusal Type(Control& control, String_View text);
// Deletes the character before the caret, as one key does; a surrogate pair is one character.
Refusal Backspace(Control& control);
// Focuses the control and makes one edit: `length` code units at `start` become `text`. Both are cut to the
// text.
Refusal Replace(Control& control, std::size_t start, std::size_t length, String_View text);
// Leaves the control with this text and caret, as the editing keys of a window do.
Refusal Edit(Control& control, String_View text, std::size_t caret);
Refusal Pick(Control& control, automation::Long index);
// Presses a command button, which takes the focus, or picks an option button.
Refusal Press(Control& control);
Refusal Press_Key(Form& form, Key key);
Refusal Close(Form& form);

} // namespace toolkit::user_input
