// Scripts, command lines and the display of the host.
#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "host/program.h"
#include "options/subcommand.h"
#include "scripts/script_display.h"
#include "transcript/box_reporter.h"

namespace {

using namespace host;

// --- scripts

const std::vector<String> Names{u"cmbNode", u"txtTransfer", u"cmdOK"};

TEST(Script, Accepts_Every_Form_Of_A_Command) {
    struct Case {
        const char* Line;
        Verb Action;
        std::vector<String> Texts;
        std::vector<Long> Numbers;
    };
    const Case cases[] = {
        {"shown 1 -32768 32767", Verb::Shown, {u"1", u"-32768", u"32767"}, {1, -32768, 32767}},
        {"shown 1 1 0 2", Verb::Shown, {u"1", u"1", u"0", u"2"}, {1, 1, 0, 2}},
        {"shown 1 1 0 -2 silent", Verb::Shown, {u"1", u"1", u"0", u"-2", u"silent"}, {1, 1, 0, -2, 1}},
        {"shown \"3\" 007 1", Verb::Shown, {u"3", u"007", u"1"}, {3, 7, 1}},
        {"new", Verb::New, {}, {}},
        {"blind true", Verb::Blind, {u"true"}, {1}},
        {"blind false", Verb::Blind, {u"false"}, {0}},
        {"focus cmbNode", Verb::Focus, {u"cmbNode"}, {0}},
        {"type txtTransfer \"\"", Verb::Type, {u"txtTransfer", u""}, {0, 0}},
        {"type txtTransfer #", Verb::Type, {u"txtTransfer", u"#"}, {0, 0}},
        {"type txtTransfer 5\"x\\n", Verb::Type, {u"txtTransfer", u"5\"x\\n"}, {0, 0}},
        {R"(paste txtTransfer "a b\t\n\"\\\u00c4\uD83D\uDCDE\uD800#")",
         Verb::Paste,
         {u"txtTransfer", String(u"a b\t\n\"\\\u00c4\U0001F4DE") + char16_t(0xD800) + u"#"},
         {0, 0}},
        {"\t insert   txtTransfer\t3 x  ", Verb::Insert, {u"txtTransfer", u"3", u"x"}, {0, 3, 0}},
        {"insert txtTransfer 99999999999999999999 x",
         Verb::Insert,
         {u"txtTransfer", u"99999999999999999999", u"x"},
         {0, INT32_MAX, 0}},
        {"backspace txtTransfer", Verb::Backspace, {u"txtTransfer"}, {0}},
        {"backspace txtTransfer 0", Verb::Backspace, {u"txtTransfer", u"0"}, {0, 0}},
        {"pick cmbNode -99999999999", Verb::Pick, {u"cmbNode", u"-99999999999"}, {0, INT32_MIN}},
        {"click cmdOK", Verb::Click, {u"cmdOK"}, {0}},
        {"key Enter", Verb::Key, {u"Enter"}, {0}},
        {"key Escape", Verb::Key, {u"Escape"}, {1}},
        {"key Tab", Verb::Key, {u"Tab"}, {2}},
        {"close", Verb::Close, {}, {}},
        {"answer ok", Verb::Answer, {u"ok"}, {1}},
        {"answer save", Verb::Answer, {u"save"}, {2}},
        {"answer discard", Verb::Answer, {u"discard"}, {3}},
        {"answer cancel", Verb::Answer, {u"cancel"}, {4}},
        {"answer fail", Verb::Answer, {u"fail"}, {-1}},
        {"answer -2147483648", Verb::Answer, {u"-2147483648"}, {INT32_MIN}},
        {"show", Verb::Show, {}, {}},
        {"show form", Verb::Show, {u"form"}, {0}},
        {"show cmdOK cmbNode cmdOK", Verb::Show, {u"cmdOK", u"cmbNode", u"cmdOK"}, {0, 0, 0}},
        {"items cmbNode\r", Verb::Items, {u"cmbNode"}, {0}},
    };
    for (const Case& given : cases) {
        SCOPED_TRACE(given.Line);
        const auto commands = Parse_Script(given.Line, Names);
        ASSERT_EQ(commands.size(), 1U);
        EXPECT_EQ(commands[0].Action, given.Action);
        std::vector<String> texts;
        std::vector<Long> numbers;
        for (const Argument& argument : commands[0].Arguments) {
            texts.push_back(argument.Text);
            numbers.push_back(argument.Number);
        }
        EXPECT_EQ(texts, given.Texts);
        EXPECT_EQ(numbers, given.Numbers);
    }
}

// The cells of a table in a text, with "|" between them.
std::vector<std::string> Cells(const std::string& table) {
    std::vector<std::string> cells;
    std::istringstream stream(table);
    for (std::string cell; std::getline(stream, cell, '|');)
        cells.push_back(cell);
    return cells;
}

TEST(Script, Rejects_What_Is_No_Command) {
    const std::string lines =
        R"(clik cmdOK|Shown 1 1 1|""|shown|shown 1 1|shown 1 1 x|shown 1 1 32768|shown -32769 1 1|)"
        R"(shown 1 1 1.0|shown 1 1 +1|shown 1 1 1e0|shown 1 1 "1 "|shown 1 1 1 silent|shown 1 1 1 1 quiet|)"
        R"(shown 1 1 1 1 silent 1|new x|blind|blind True|blind 1|focus|focus CMDOK|focus form|)"
        R"(focus cmdOK cmbNode|type txtTransfer|type txtTransfer a b|type "txtTransfer"5 x|)"
        R"(type txtTransfer "x|type txtTransfer "\x"|type txtTransfer "\u12G4"|type nothing x|)"
        R"(paste txtTransfer|insert txtTransfer x|insert txtTransfer -1 x|insert txtTransfer x 1|)"
        R"(backspace txtTransfer -1|backspace txtTransfer one|backspace txtTransfer 1 1|pick cmbNode|)"
        R"(pick cmbNode first|pick cmbNode ""|click|key|key enter|key F1|close now|answer|answer Ok|)"
        R"(answer 2147483648|answer ok ok|show form cmdOK|show cmdOK form|show cmdOK Form|items|items form|)"
        "items cmbNode cmdOK|new\xC2\xA0|new \xFF|type txtTransfer \xED\xA0\x80";
    for (const std::string& line : Cells(lines)) {
        try {
            Parse_Script("# one\n\nnew\n" + line + "\nclik\n", Names);
            ADD_FAILURE() << line << ": accepted";
        } catch (const Script_Error& error) {
            EXPECT_EQ(error.Line, 4) << line;
            EXPECT_EQ(std::string(error.what()).rfind("line 4: ", 0), 0U) << error.what();
        }
    }
}

TEST(Script, Counts_Lines_And_Keeps_Them_As_Written) {
    const auto commands =
        Parse_Script("\xEF\xBB\xBF\t# comment\r\n \t\r\n  type \ttxtTransfer \"a\"  \r\nclose", Names);
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_EQ(commands[0].Line, 3);
    EXPECT_EQ(commands[0].Written, u"type \ttxtTransfer \"a\"");
    EXPECT_EQ(commands[1].Line, 4);
    EXPECT_TRUE(Parse_Script("", Names).empty());
}

// --- command lines

struct Ran {
    int Status;
    std::string Out, Errors;
};

Ran Run_Line(const std::string& line) {
    std::istringstream words(line), in;
    std::ostringstream out, errors;
    std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
    arguments.insert(arguments.begin(), "style-editor");
    const int status = Run_Program(arguments, {in, out, errors});
    return {status, out.str(), errors.str()};
}

TEST(Command_Line, Rejects_What_It_Does_Not_Know) {
    const std::string lines =
        "|paly x|edit x|edit --node|edit --node x|edit --node 0x1|edit --node 32768|edit --config -32769|"
        "edit --window|play x --window --terminal|edit play x|play|play x y|play x --node 1|play x --fail|"
        "play --fail A B x|play x --bogus|store|store drop|store init --nodes -1|store init --nodes 32767|"
        "store init --trace|store history --node 32768|store history x|store upgrade --nodes 1|"
        "store revert 3-2|store revert x|store show|edit --fail A";
    for (const std::string& line : Cells(lines)) {
        const Ran ran = Run_Line(line);
        EXPECT_EQ(ran.Status, 2) << line;
        EXPECT_EQ(ran.Out, "") << line;
        EXPECT_NE(ran.Errors.find("see style-editor --help"), std::string::npos) << line << ran.Errors;
    }
}

TEST(Command_Line, Says_Which_Command_Was_Nearly_Meant) {
    const std::pair<const char*, const char*> cases[] = {
        {"paly x", "did you mean style-editor play?"},
        {"store exprot", "did you mean style-editor store export?"},
        {"sotre find x", "did you mean style-editor store find?"},
        {"stor", "did you mean style-editor store?"},
        {"store find x --partitoin=2", "did you mean --partition?"},
        {"", "edit, play, store init, store find, store show, store export, store apply"}};
    for (const auto& [line, hint] : cases)
        EXPECT_NE(Run_Line(line).Errors.find(hint), std::string::npos) << line << Run_Line(line).Errors;
    EXPECT_EQ(Run_Line("photograph").Errors.find("did you mean"), std::string::npos);
}

TEST(Command_Line, Answers_Help_And_Version) {
    const std::pair<const char*, const char*> cases[] = {{"--help", "play"},
                                                         {"play --help", "--reply"},
                                                         {"store --help", "find"},
                                                         {"--version", "style-editor "}};
    for (const auto& [line, part] : cases) {
        const Ran ran = Run_Line(line);
        EXPECT_EQ(ran.Status, 0) << line << ran.Errors;
        EXPECT_NE(ran.Out.find(part), std::string::npos) << line << ran.Out;
    }
}

// What stands behind the library: the value of --name= may be empty, and an option takes one value a use.
TEST(Command_Line, Fills_The_Targets_Of_A_Command) {
    struct Sample final : Subcommand {
        Outline About() const override { return {"sample", "Help"}; }
        void Declare(Options& options) override {
            options.Argument("FILE", File, "");
            options.Number<Integer>("--number", Number, -5, 5, "");
            options.Text("--text", Text, "T", "");
            options.Repeatable("--each", Each, "E", "");
            options.Flag("--flag", Flag, "");
        }
        int Run(const Streams&) override { return 0; }
        std::string File;
        std::optional<std::string> Text;
        std::optional<Integer> Number;
        std::vector<std::string> Each;
        bool Flag = false;
    };
    Subcommands commands;
    auto& sample = static_cast<Sample&>(*commands.emplace_back(std::make_unique<Sample>()));
    const Choice choice = Read_Command_Line(
        {"sample", "--each", "A=1:[b,c]", "x", "--each", "{}", "--text=", "--number", "-5"}, commands, {});
    EXPECT_EQ(choice.Wanted, &sample);
    EXPECT_EQ(sample.File, "x");
    EXPECT_EQ(sample.Text, "");
    EXPECT_EQ(sample.Number, -5);
    EXPECT_EQ(sample.Each, (std::vector<std::string>{"A=1:[b,c]", "{}"}));
    EXPECT_FALSE(sample.Flag);
}

// --- display

TEST(Box_Reporter, Prints_Boxes_With_Their_Keys_In_Order) {
    Script_Display display;
    std::ostringstream printed;
    Transcript transcript(printed);
    Box_Reporter reporter(display, transcript);
    reporter.Show_Message({true, 2, u"Sp\u00e4ter?\r\n\u0001", 1, 3, 0, String(u"T") + char16_t(0xDC00)});
    reporter.Show_Message({.Text = u"x\"", .Style = 64, .Title = u"Information"});
    EXPECT_EQ(printed.str(),
              "{\"event\":\"box\",\"by\":\"product\",\"language\":2,\"text\":\"Sp\xC3\xA4ter?\\r\\n\\u0001\","
              "\"kind\":1,\"buttons\":3,\"title\":\"T\xEF\xBF\xBD\",\"answer\":4}\n"
              "{\"event\":\"box\",\"by\":\"platform\",\"text\":\"x\\\"\",\"style\":64,"
              "\"title\":\"Information\",\"answer\":1}\n");
}

} // namespace
