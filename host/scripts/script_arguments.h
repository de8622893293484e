// The forms that an argument of a script's command can have.
#pragma once

#include "scripts/script.h"

namespace host {

enum class Argument_Form {
    Identifier, // 16-bit number
    Silent,     // the word
    Truth,      // true or false
    Control,    // name of a control
    Control_Or_Form,
    Any_Controls, // the last of a list that may go on
    Text,
    Count, // number from 0
    Index, // number
    Key,
    Answer,
};

// "16-bit number", for a message.
std::string Form_Name(Argument_Form form);

// Nothing when the word does not have the form.
std::optional<Argument> Understand(Argument_Form form, const String& word,
                                   const std::vector<String>& control_names);

} // namespace host
