#include "script_arguments.h"

#include <algorithm>
#include <span>

#include "automation/text.h"
#include "process/decimal.h"
#include "toolkit/user_input.h"

namespace host {

namespace {

struct Named_Number {
    String_View Name;
    Long Number;
};

constexpr Named_Number Truths[] = {{u"false", 0}, {u"true", 1}};

constexpr Named_Number Silences[] = {{u"silent", 1}};

constexpr Named_Number Keys[] = {
    {u"Enter", static_cast<Long>(toolkit::user_input::Key::Enter)},
    {u"Escape", static_cast<Long>(toolkit::user_input::Key::Escape)},
    {u"Tab", static_cast<Long>(toolkit::user_input::Key::Tab)},
};

constexpr Named_Number Answers[] = {
    {u"ok", toolkit::answer::OK},           {u"save", toolkit::answer::Save},
    {u"discard", toolkit::answer::Discard}, {u"cancel", toolkit::answer::Cancel},
    {u"fail", toolkit::answer::Not_Shown},
};

using Number = std::optional<Long>;

Number One_Of(std::span<const Named_Number> names, const String& word) {
    const auto found =
        std::find_if(names.begin(), names.end(), [&](const Named_Number& name) { return name.Name == word; });
    return found == names.end() ? Number() : found->Number;
}

std::optional<Argument> As(const String& word, Number number) {
    if (!number)
        return {};
    return Argument{word, *number};
}

// A count beyond every text and a negative one differ: the first is cut, the second is no count.
Number Counted(const String& word) {
    const Number number = Nearest_Decimal<Long>(automation::To_UTF8(word));
    return number.value_or(-1) < 0 ? Number() : number;
}

Number Answered(const String& word) {
    const Number named = One_Of(Answers, word);
    return named ? named : Decimal<Long>(automation::To_UTF8(word));
}

} // namespace

std::string Form_Name(Argument_Form form) {
    switch (form) {
    case Argument_Form::Identifier:
        return "number from -32768 to 32767";
    case Argument_Form::Silent:
        return "'silent'";
    case Argument_Form::Truth:
        return "'true' or 'false'";
    case Argument_Form::Count:
        return "number from 0";
    case Argument_Form::Index:
        return "number";
    case Argument_Form::Key:
        return "key (Enter, Escape or Tab)";
    case Argument_Form::Answer:
        return "answer (ok, save, discard, cancel, fail or a number)";
    case Argument_Form::Text:
        return "text";
    case Argument_Form::Control:
    case Argument_Form::Control_Or_Form:
    case Argument_Form::Any_Controls:
        return "control of the dialog";
    }
    return {};
}

std::optional<Argument> Understand(Argument_Form form, const String& word,
                                   const std::vector<String>& control_names) {
    switch (form) {
    case Argument_Form::Identifier:
        return As(word, Decimal<Integer>(automation::To_UTF8(word)));
    case Argument_Form::Silent:
        return As(word, One_Of(Silences, word));
    case Argument_Form::Truth:
        return As(word, One_Of(Truths, word));
    case Argument_Form::Count:
        return As(word, Counted(word));
    case Argument_Form::Index:
        return As(word, Nearest_Decimal<Long>(automation::To_UTF8(word)));
    case Argument_Form::Key:
        return As(word, One_Of(Keys, word));
    case Argument_Form::Answer:
        return As(word, Answered(word));
    case Argument_Form::Text:
        return Argument{word};
    case Argument_Form::Control_Or_Form:
        if (word == The_Form)
            return Argument{word};
        [[fallthrough]];
    case Argument_Form::Control:
    case Argument_Form::Any_Controls:
        if (std::find(control_names.begin(), control_names.end(), word) != control_names.end())
            return Argument{word};
        return {};
    }
    return {};
}

} // namespace host
