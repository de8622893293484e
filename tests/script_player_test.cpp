// The program from outside: editing scripts with their whole transcripts, exit statuses and messages.
//
// scripts/NAME.script is run in its folder and must print scripts/NAME.expected. Its first lines may say
// "# options: ...", "# status: N" (0 unless given) and "# error: part of the message".
#include <gtest/gtest.h>

#include "program_run.h"
#include "script_files.h"

namespace {

using program_run::Outcome;

using namespace script_files;

Outcome Style_Editor(const std::vector<std::string>& arguments, const Temporary_Folder& home,
                     const std::string& input = {}) {
    return program_run::Run(STYLE_EDITOR, arguments, home, Scripts, input);
}

class Scripted : public testing::TestWithParam<std::string> {};

TEST_P(Scripted, Prints_What_Is_Expected) {
    const std::string file = GetParam() + ".script";
    const std::string script = Bytes_Of_File(Scripts + "/" + file);
    const Temporary_Folder home;
    std::vector<std::string> arguments{"play", file, "--appdata", home / "appdata"};
    for (const std::string& word : Words(Directive(script, "options")))
        arguments.push_back(word);
    const Outcome outcome = Style_Editor(arguments, home);

    EXPECT_EQ(Comparable(outcome.Out), Lines(Bytes_Of_File(Scripts + "/" + GetParam() + ".expected")));
    const std::string status = Directive(script, "status");
    EXPECT_EQ(std::to_string(outcome.Status), status.empty() ? "0" : status) << outcome.Errors;
    const std::string error = Directive(script, "error");
    EXPECT_EQ(outcome.Errors.empty(), error.empty()) << outcome.Errors;
    EXPECT_NE(outcome.Errors.find(error), std::string::npos) << outcome.Errors;
}

INSTANTIATE_TEST_SUITE_P(Script, Scripted, testing::ValuesIn(Script_Names()),
                         [](const auto& script) { return script.param; });

TEST(Scripts, Are_All_There) {
    std::size_t expected = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Scripts))
        expected += entry.path().extension() == ".expected";
    EXPECT_EQ(Script_Names().size(), expected);
    EXPECT_GE(expected, 20U);
}

// --- statuses and messages

struct Bad_Start {
    std::vector<std::string> Arguments; // @ stands for the home folder
    int Status;
    std::string Message; // part of it
};

TEST(Program, Says_What_Is_Wrong_And_Leaves_Nothing_Behind) {
    const std::string script = "shown 1 1 1\n";
    const Bad_Start cases[] = {
        {{}, 2, "play"},
        {{"play"}, 2, "SCRIPT"},
        {{"play", "-", "--window"}, 3, "display"},
        {{"play", "@/none.script"}, 2, "none.script"},
        {{"play", "@"}, 2, "cannot be read"},
        {{"play", "-", "--fail", "Nothing"}, 2, "'Nothing'"},
        {{"play", "-", "--missing", "Nothing"}, 2, "Nothing"},
        {{"play", "-", "--missing", "KOR_STYLE_Node.Busyness_Rules", "--store", "sqlite:@/s.db"}, 3, "s.db"},
        {{"play", "-", "--reply", "Get_Style_Nodes=@/none.xml"}, 3, "none.xml"},
        {{"play", "-", "--reply", "Get_Style_Nodes=@/latin.txt"}, 3, "UTF-8"},
        {{"play", "-", "--strings", "@/none.strings"}, 3, "none.strings"},
        {{"play", "-", "--strings", "@/broken.strings"}, 3, "line 3"},
        {{"play", "-", "--strings", "@/twice.strings"}, 3, "line 2"},
        {{"play", "-", "--registry", "@/none.reg"}, 3, "none.reg"},
        {{"play", "-", "--registry", "@/broken.reg"}, 3, "broken.reg"},
        {{"play", "-", "--store", "sqlite:@/none.db"}, 3, "store init --store sqlite:"},
        {{"play", "-", "--store", "sqlite:@/latin.txt"}, 3, "latin.txt"},
        {{"play", "-", "--store", "somewhere"}, 3, "sqlite:PATH"},
        {{"store", "init", "--store", "sqlite:@/\xFF.db"}, 2, "not UTF-8"},
        {{"edit", "--node", "70000"}, 2, "--node"},
        {{"edit"}, 3, "display"},
        {{"store", "init", "--store", "sqlite:@/latin.txt"}, 3, "latin.txt"},
    };
    for (const Bad_Start& given : cases) {
        const Temporary_Folder home;
        Write_File(home / "latin.txt", "caf\xE9\n");
        Write_File(home / "broken.strings", "0 \"~\"\n# 1\n1 no quotes\n");
        Write_File(home / "twice.strings", "0 \"a\"\n0 \"b\"\n");
        Write_File(home / "broken.reg", "REGEDIT5\n");
        std::vector<std::string> arguments = given.Arguments;
        for (std::string& argument : arguments)
            if (const auto at = argument.find('@'); at != std::string::npos)
                argument.replace(at, 1, home.String());
        const Outcome outcome = Style_Editor(arguments, home, script);
        const std::string shown = testing::PrintToString(given.Arguments) + ": " + outcome.Errors;
        EXPECT_EQ(outcome.Status, given.Status) << shown;
        EXPECT_EQ(outcome.Out, "") << shown;
        EXPECT_EQ(outcome.Errors.rfind("style-editor: ", 0), 0U) << shown;
        EXPECT_NE(outcome.Errors.find(given.Message), std::string::npos) << shown;
        EXPECT_EQ(Lines(outcome.Errors).size(), 1U) << shown;
        EXPECT_FALSE(std::filesystem::exists(home / ".local")) << shown;
    }
}

TEST(Program, Checks_The_Whole_Script_Before_Anything_Runs) {
    for (const std::string last :
         {"clik cmdOK", "focus txtNothing", "shown 1 1 40000", "type cmdOK \"a", "new \xFF"}) {
        const Temporary_Folder home;
        const Outcome outcome =
            Style_Editor({"play", "-"}, home, "# first\nshown 1 1 1\nshow\n" + last + "\n");
        EXPECT_EQ(outcome.Status, 2) << last;
        EXPECT_EQ(outcome.Out, "") << last;
        EXPECT_NE(outcome.Errors.find("line 4"), std::string::npos) << outcome.Errors;
        EXPECT_FALSE(std::filesystem::exists(home / ".local")) << last;
    }
}

TEST(Program, Makes_The_Users_Own_Store_At_First_Use) {
    const Temporary_Folder home;
    const std::string script =
        "shown 1 2 7\ntype txtDescription X\nclick cmdOK\nshown 1 2 7\nshow txtDescription\n";
    EXPECT_EQ(Style_Editor({"play", "-"}, home, script).Status, 0);
    const std::filesystem::path store = home / ".local/share/style-editor/store.db";
    ASSERT_TRUE(std::filesystem::exists(store));
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(store).permissions(), perms::owner_read | perms::owner_write);
    EXPECT_EQ(std::filesystem::status(store.parent_path()).permissions(), perms::owner_all);
    const Outcome again = Style_Editor({"play", "-"}, home, "shown 1 2 7\nshow txtDescription\n");
    EXPECT_NE(again.Out.find("\"text\":\"XWorkshop\""), std::string::npos) << again.Out;
    EXPECT_EQ(Style_Editor({"store", "init"}, home).Status, 3); // it is there already
}

TEST(Program, Makes_A_Store_Of_Many_Nodes) {
    const Temporary_Folder home;
    const std::string store = "sqlite:" + (home / "many.db");
    EXPECT_EQ(Style_Editor({"store", "init", "--nodes", "300", "--store", store}, home).Status, 0);
    const Outcome outcome =
        Style_Editor({"play", "-", "--store", store}, home, "shown 1 1 300\nshow lblRecordPosition\n");
    EXPECT_NE(outcome.Out.find("\"caption\":\"300 of 300\""), std::string::npos) << outcome.Out;
    EXPECT_FALSE(std::filesystem::exists(home / ".local"));
}

TEST(Program, Writes_The_User_Log_Of_The_Folder_That_It_Is_Given) {
    const Temporary_Folder home;
    const std::string log = home / "appdata/Velmorant/ZEBRIX/User_Log.txt";
    const auto play = [&](const std::vector<std::string>& more) {
        std::vector<std::string> arguments{"play", "-", "--strings", "missing_20.strings"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Style_Editor(arguments, home, "shown 1 1 1 1 silent\n");
    };
    EXPECT_EQ(play({"--appdata", home / "appdata"}).Status, 0);
    EXPECT_FALSE(std::filesystem::exists(home / "appdata")); // no folder is ever made
    std::filesystem::create_directories(home / "appdata/Velmorant/ZEBRIX");
    play({"--appdata", home / "appdata"});
    Write_File(home / "folders.reg",
               "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
               "Shell Folders]\n\"Common AppData\"=\"" +
                   (home / "appdata") + "\"\n");
    const Outcome outcome = play({"--appdata", "", "--registry", home / "folders.reg"});
    EXPECT_EQ(outcome.Out.find("\"box\""), std::string::npos) << outcome.Out;
    const auto lines = Lines(Bytes_Of_File(log));
    ASSERT_EQ(lines.size(), 2U) << Bytes_Of_File(log);
    for (const std::string& line : lines) {
        EXPECT_EQ(line.rfind("\"Internal Error\t", 0), 0U) << line;
        EXPECT_NE(line.find("\t326\tResource with identifier '20' not found\tKOR_STYLE_Node\"\r"),
                  std::string::npos)
            << line;
    }
}

TEST(Program, Says_When_The_Transcript_Cannot_Be_Written) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "there is no /dev/full here";
    const Temporary_Folder home;
    const Outcome outcome = program_run::Run(
        "/bin/sh", {"-c", std::string(STYLE_EDITOR) + " play - >/dev/full"}, home, Scripts, "shown 1 1 1\n");
    EXPECT_EQ(outcome.Status, 3);
    EXPECT_NE(outcome.Errors.find("could not be written"), std::string::npos) << outcome.Errors;
}

} // namespace
