// The commands for translators and the names that scripts know, on the built program.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "automation/text.h"
#include "program_run.h"
#include "style_node/control_names.h"

namespace {

using program_run::Outcome;

class Translation : public ::testing::Test {
protected:
    Outcome Editor(const std::vector<std::string>& arguments, const std::string& input = {}) {
        return program_run::Run(STYLE_EDITOR, arguments, home, home.String(), input);
    }
    using Changes = std::vector<std::pair<std::string, std::string>>;

    // What is said of the German table after some changes to it, without the file's name.
    std::string Said(const Changes& changes) {
        std::string text = German;
        for (const auto& [old, replacement] : changes)
            Replace(text, old, replacement);
        const std::string path = Write_File(home / "t", text);
        const Outcome outcome = Editor({"strings", "check", path});
        EXPECT_EQ(outcome.Status, outcome.Out.empty() ? 0 : 1) << outcome.Errors;
        std::string said = outcome.Out;
        Replace(said, path + ":", "");
        return said;
    }
    static void Replace(std::string& text, const std::string& old, const std::string& replacement) {
        const auto at = text.find(old);
        ASSERT_NE(at, std::string::npos) << old << " in " << text;
        text.replace(at, old.size(), replacement);
    }

    Temporary_Folder home;
    const std::string German = Bytes_Of_File(RESOURCES "/translations/language_2.strings");
};

TEST_F(Translation, The_Shipped_Tables_Are_Faultless) {
    for (const std::string table : {"language_1", "translations/language_2"}) {
        const Outcome outcome = Editor({"strings", "check", RESOURCES "/" + table + ".strings"});
        EXPECT_EQ(outcome.Status, 0) << table;
        EXPECT_EQ(outcome.Out + outcome.Errors, "") << table;
    }
}

TEST_F(Translation, Says_What_Is_Wrong_And_Where) {
    struct {
        Changes Made;
        const char* Said;
    } const cases[] = {
        {{{"116 \"Knoten „~“ nicht gefunden.\"\n", ""}},
         " text 116 is missing (in English: \"Node '~' not found.\")\n"},
        {{{"„~“", "x"}}, "70: text 116 has no ~, the place holder\n"},
        {{{"62 \"1200\"", "62 \"12x\""}},
         "11: text 62 is no position or width: write a number of twips, digits only\n"},
        {{{"62 \"1200\"", "62 \"-5\""}},
         "11: text 62 is no position or width: write a number of twips, digits only\n"},
        {{{"62 \"1200\"", "62 \"32768\""}}, "11: text 62 is larger than 32767\n"},
        {{{"\"OK\"", "\"\""}}, "47: text 95 is empty: the dialog's set-up would end here\n"},
        {{{"\"TEILWEISE\"", "\"TEILWEISE UND LANG\""}},
         "15: \"TEILWEISE UND LANG\" overflows its place by 42 pixels\n"},
        {{{"\"Besetzt 2 ein", "\"Nur bei ERWEITERT besetzt"}}, // shown for one type only
         "40: \"Nur bei ERWEITERT besetzt (ms):\" overflows its place by 46 pixels\n"},
        {{{"\"OK\"", "\"O&K\""}, {"\"Abbrechen", "\"Abbre&khen"}},
         "50: \"Abbre&khen\" has the access key of \"O&K\"\n"},
        {{{"102 \"3005\"", "102 \"3900\""}}, "53: \"Übernehmen\" cmdApply does not fit into the window\n"},
        {{{"72 \"1980\"", "72 \"3100\""}}, " cmbThreshold does not fit into the window\n"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Said(one.Made), one.Said) << one.Made[0].second;
}

TEST_F(Translation, Draws_A_Picture_Without_A_Screen_Or_Says_Why_Not) {
    const Outcome drawn =
        Editor({"strings", "picture", RESOURCES "/translations/language_2.strings", home / "x.png"});
    EXPECT_EQ(drawn.Status, 0) << drawn.Errors;
    EXPECT_EQ(Bytes_Of_File(home / "x.png").substr(1, 3), "PNG");
    const Outcome no_file = Editor({"strings", "picture", home / "missing", home / "y.png"});
    EXPECT_EQ(no_file.Status, 3);
    EXPECT_NE(no_file.Errors.find("missing"), std::string::npos);
}

TEST_F(Translation, The_Second_Language_Fills_The_Dialog) {
    const Outcome outcome =
        Editor({"play", "-", "--strings", RESOURCES "/translations/language_2.strings"},
               "shown 1 1 9 2\nshow form\nshow optPartial cmdApply\nclick optEnhanced\nshow lblBusyOff\n");
    ASSERT_EQ(outcome.Status, 0) << outcome.Errors;
    for (const char* text : {"STIL-Knoteneditor", "TEILWEISE", "Übernehmen", "Besetzt 2 ein (ms):"})
        EXPECT_NE(outcome.Out.find(text), std::string::npos) << text << " in " << outcome.Out;
}

TEST_F(Translation, The_Editor_Takes_Installed_Texts_Or_Says_Which_There_Are) {
    const Outcome unknown = Editor({"edit", "--language", "9"});
    EXPECT_EQ(unknown.Status, 3);
    EXPECT_NE(unknown.Errors.find("there are no texts for language 9; installed are 1 English, 2 German"),
              std::string::npos)
        << unknown.Errors;
    EXPECT_FALSE(std::filesystem::exists(home / ".local")) << "the store was opened before";
    for (const char* language : {"1", "2"}) // there is no display, which is asked for after the texts
        EXPECT_NE(Editor({"edit", "--language", language}).Errors.find("There is no display"),
                  std::string::npos);
}

TEST_F(Translation, Scripts_Know_The_Names_Of_All_Controls) {
    const Outcome outcome = Editor({"play", "-"}, "shown 1 1 1\nshow\n");
    std::vector<std::string> names, expected;
    std::istringstream lines(outcome.Out);
    for (std::string line; std::getline(lines, line);)
        if (const auto json = nlohmann::json::parse(line); json.at("event") == "control")
            names.push_back(json.at("name"));
    for (const auto name : style_node::Control_Names)
        expected.push_back(automation::To_UTF8(name));
    EXPECT_EQ(names, expected);
}

} // namespace
