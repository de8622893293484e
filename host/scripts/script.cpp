#include "scripts/script.h"

#include <algorithm>
#include <array>

#include "automation/text.h"
#include "script_arguments.h"
#include "shell/quoted_text.h"

namespace host {

namespace {

struct Grammar {
    String_View Name;
    Verb Action;
    std::vector<Argument_Form> Needed;
    std::vector<Argument_Form> Optional = {};
};

const std::array<Grammar, 15>& Commands() {
    using enum Argument_Form;
    static const std::array<Grammar, 15> commands{{
        {u"shown", Verb::Shown, {Identifier, Identifier, Identifier}, {Identifier, Silent}},
        {u"new", Verb::New, {}},
        {u"blind", Verb::Blind, {Truth}},
        {u"focus", Verb::Focus, {Control}},
        {u"type", Verb::Type, {Control, Text}},
        {u"paste", Verb::Paste, {Control, Text}},
        {u"insert", Verb::Insert, {Control, Count, Text}},
        {u"backspace", Verb::Backspace, {Control}, {Count}},
        {u"pick", Verb::Pick, {Control, Index}},
        {u"click", Verb::Click, {Control}},
        {u"key", Verb::Key, {Key}},
        {u"close", Verb::Close, {}},
        {u"answer", Verb::Answer, {Answer}},
        {u"show", Verb::Show, {}, {Control_Or_Form, Any_Controls}},
        {u"items", Verb::Items, {Control}},
    }};
    return commands;
}

bool Is_Blank(char16_t unit) {
    return unit == u' ' || unit == u'\t';
}

String_View Without_Blanks(String_View text) {
    while (!text.empty() && Is_Blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && Is_Blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string Quoted(String_View text) {
    return "'" + automation::To_UTF8(text) + "'";
}

class Line_Parser {
public:
    Line_Parser(int line, String_View text, const std::vector<String>& controls)
        : line(line), rest(text), controls(controls) {}

    Command Parse() {
        Command command{line, String(rest), {}, {}};
        const std::vector<String> words = Take_Words();
        const Grammar& grammar = Named(words.front());
        command.Action = grammar.Action;
        for (std::size_t index = 1; index < words.size(); ++index)
            command.Arguments.push_back(Understood(grammar, index - 1, words[index]));
        if (command.Arguments.size() < grammar.Needed.size())
            Refuse(Quoted(grammar.Name) + " needs " + std::to_string(grammar.Needed.size()) + " arguments");
        if (command.Arguments.size() > 1 && command.Action == Verb::Show && command.Control() == The_Form)
            Refuse("'show form' takes no controls");
        return command;
    }

private:
    [[noreturn]] void Refuse(const std::string& problem) const { throw Script_Error(line, problem); }

    std::vector<String> Take_Words() {
        std::vector<String> words;
        while (!rest.empty()) {
            words.push_back(Take_Word());
            rest = Without_Blanks(rest);
        }
        return words;
    }

    String Take_Word() {
        if (rest.front() == u'"')
            return Take_Quoted_Word();
        const auto end = std::find_if(rest.begin(), rest.end(), Is_Blank);
        String word(rest.begin(), end);
        rest.remove_prefix(word.size());
        return word;
    }

    String Take_Quoted_Word() {
        auto word = shell::Take_Quoted(rest);
        if (!word)
            Refuse("a quoted text has no end, or an escape that is none of \\\" \\\\ \\t \\n \\uXXXX");
        if (!rest.empty() && !Is_Blank(rest.front()))
            Refuse("a blank is missing behind a quoted text");
        return std::move(*word);
    }

    const Grammar& Named(const String& name) const {
        const auto found = std::find_if(Commands().begin(), Commands().end(),
                                        [&](const Grammar& grammar) { return grammar.Name == name; });
        if (found == Commands().end())
            Refuse("there is no command " + Quoted(name));
        return *found;
    }

    Argument Understood(const Grammar& grammar, std::size_t index, const String& word) const {
        const auto form = Form_Of(grammar, index);
        if (!form)
            Refuse("too many arguments for " + Quoted(grammar.Name));
        auto argument = Understand(*form, word, controls);
        if (!argument)
            Refuse(Quoted(word) + " is no " + Form_Name(*form));
        return std::move(*argument);
    }

    static std::optional<Argument_Form> Form_Of(const Grammar& grammar, std::size_t index) {
        if (index < grammar.Needed.size())
            return grammar.Needed[index];
        index -= grammar.Needed.size();
        if (index < grammar.Optional.size())
            return grammar.Optional[index];
        if (!grammar.Optional.empty() && grammar.Optional.back() == Argument_Form::Any_Controls)
            return Argument_Form::Any_Controls;
        return {};
    }

    const int line;
    String_View rest;
    const std::vector<String>& controls;
};

std::string_view Take_Line(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

std::string_view Without_Byte_Order_Mark(std::string_view text) {
    constexpr std::string_view Mark = "\xEF\xBB\xBF";
    if (text.starts_with(Mark))
        text.remove_prefix(Mark.size());
    return text;
}

} // namespace

Script_Error::Script_Error(int line, const std::string& problem)
    : Usage_Error("line " + std::to_string(line) + ": " + problem), Line(line) {}

std::vector<Command> Parse_Script(std::string_view utf8, const std::vector<String>& control_names) {
    std::vector<Command> commands;
    utf8 = Without_Byte_Order_Mark(utf8);
    for (int line = 1; !utf8.empty(); ++line) {
        const auto decoded = automation::From_UTF8(Take_Line(utf8));
        if (!decoded)
            throw Script_Error(line, "it is not UTF-8");
        const String_View text = Without_Blanks(*decoded);
        if (!text.empty() && text.front() != u'#')
            commands.push_back(Line_Parser(line, text, control_names).Parse());
    }
    return commands;
}

} // namespace host
