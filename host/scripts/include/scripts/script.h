// Editing scripts: one command a line, UTF-8, checked as a whole before anything runs.
//
// A line is a command's name and its arguments, separated by blanks; an argument may stand in double quotes
// (shell/quoted_text.h). Empty lines and lines that begin with "#" are skipped. Pure functions.
#pragma once

#include <vector>

#include "automation/text.h"
#include "process/errors.h"

namespace host {

using automation::Integer;
using automation::Long;
using automation::String;
using automation::String_View;

enum class Verb {
    Shown,
    New,
    Blind,
    Focus,
    Type,
    Paste,
    Insert,
    Backspace,
    Pick,
    Click,
    Key,
    Close,
    Answer,
    Show,
    Items
};

struct Argument {
    String Text;     // as given, without the quotes
    Long Number = 0; // what a number, a key, an answer, true or false stands for
};

struct Command {
    int Line = 0;   // counted from 1
    String Written; // the line without the blanks around it
    Verb Action{};
    std::vector<Argument> Arguments;

    String_View Control() const { return Arguments.front().Text; }
};

// Names the line: "line 3: there is no command 'clik'".
struct Script_Error : Usage_Error {
    Script_Error(int line, const std::string& problem);
    const int Line;
};

// Throws Script_Error for the first line that is no command, or names none of the controls.
std::vector<Command> Parse_Script(std::string_view utf8, const std::vector<String>& control_names);

// The argument of `show` that stands for the form.
constexpr String_View The_Form = u"form";

} // namespace host
