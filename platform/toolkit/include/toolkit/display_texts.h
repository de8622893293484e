// What Displays say on their own account, beside the texts of forms and messages: the one place for whoever
// translates them. The buttons of a window's boxes are Qt's, which brings its own translations. Pure data.
#pragma once

#include "automation/text.h"

namespace toolkit::display_text {

using automation::String_View;

// An edit that a form's handlers took back, or made another text of.
constexpr String_View Not_Accepted = u"Not accepted";
constexpr String_View Became = u"Changed to";
constexpr String_View Keeps_Its_Text = u"the field keeps its text";

// Message boxes: their buttons, of which a letter is the key, and what they are.
constexpr String_View OK = u"OK";
constexpr String_View Save = u"Save";
constexpr String_View Discard = u"Discard";
constexpr String_View Cancel = u"Cancel";
constexpr String_View Error = u"Error";
constexpr String_View Information = u"Information";
constexpr String_View Question = u"Question";
constexpr String_View More_Text = u"Up, Down: more text";

// Hints of a terminal.
constexpr String_View Move = u"Tab, Shift-Tab: move";
constexpr String_View List = u"F4: list";
constexpr String_View Choose = u"Space: choose";
constexpr String_View Enter = u"Enter";
constexpr String_View Escape = u"Esc";
constexpr String_View Busy = u"Please wait ...";

// A terminal's answers to keys.
constexpr String_View Replaces = u"The next key or paste replaces the text";
constexpr String_View No_Such_Key = u"This key does nothing here";
constexpr String_View No_Enter = u"No button answers Enter";
constexpr String_View No_Escape = u"No button answers Esc; Ctrl-Q closes the dialog";
constexpr String_View No_Interrupt = u"Ctrl-C does nothing here; Esc cancels";
constexpr String_View No_Letter = u"No control answers this letter";
constexpr String_View No_Entry = u"No entry begins with";

} // namespace toolkit::display_text
