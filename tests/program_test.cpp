// The built program among what it does not choose: outputs that cannot be written, inputs without an end,
// signals, closed descriptors, limits, and texts that would act on a terminal.
#include <algorithm>
#include <chrono>
#include <sys/stat.h>
#include <thread>

#include "program_run.h"
#include "sqlite_rows.h"

namespace {

using program_run::Outcome;

// The address sanitizer reserves more memory than any limit leaves it, and looks for leaks by means that a
// limit takes.
#ifdef __SANITIZE_ADDRESS__
constexpr const char* Little_Memory = "";
#else
constexpr const char* Little_Memory = "ulimit -v 3000000;";
#endif

using Strings = std::vector<std::string>;

class Hostile_Surroundings : public ::testing::Test {
protected:
    // By a shell, which sets `redirections` and limits before.
    Outcome Run(const std::string& before, const Strings& arguments, const std::string& redirections,
                const std::string& input = "") const {
        Strings words{"-c", before + " exec \"$0\" \"$@\" " + redirections, STYLE_EDITOR};
        for (std::string word : arguments) {
            if (const auto at = word.find('@'); at != std::string::npos)
                word.replace(at, 1, home.String());
            words.push_back(word);
        }
        return program_run::Run("/bin/sh", words, home, home.String(), input);
    }
    Outcome Run(const Strings& arguments, const std::string& redirections = "",
                const std::string& input = "") const {
        return Run("", arguments, redirections, input);
    }
    static void Says(const Outcome& outcome, int status, const std::string& text) {
        EXPECT_EQ(outcome.Status, status) << outcome.Errors;
        EXPECT_NE(outcome.Errors.find(text), std::string::npos) << outcome.Errors;
        EXPECT_EQ(std::count(outcome.Errors.begin(), outcome.Errors.end(), '\n'), 1) << outcome.Errors;
    }

    const Temporary_Folder home;
    const std::string store = "sqlite:" + (home / "store.db");
};

TEST_F(Hostile_Surroundings, An_Output_That_Cannot_Be_Written_Is_An_Error) {
    const Strings commands[] = {
        {"--help"},
        {"--version"},
        {"store", "--help"},
        {"store", "init", "--store", "sqlite:@/new.db"},
        {"store", "export", "--store", store},
        {"store", "history", "--store", store, "--json"},
        {"store", "apply", "-", "--dry-run", "--store", store},
        {"store", "apply", "-", "--store", store},
        {"list", "No.Such_Class"},
        {"strings", "check", "@/broken.strings"},
        {"play", "-", "--store", store},
    };
    Write_File(home / "broken.strings", "0 \"\"\n");
    ASSERT_EQ(Run({"store", "init", "--store", store}).Status, 0);
    ASSERT_EQ(
        Run({"store", "apply", "-", "--store", store}, "", R"({"NodeNumber":3,"Hookflash":"555"})").Status,
        0);
    int flash = 600;
    for (const Strings& command : commands)
        for (const char* redirection : {">/dev/full", ">&-"}) {
            std::filesystem::remove(home / "new.db");
            const std::string input =
                command[0] == "play" ? "shown 1 1 3\nclose\n"
                                     : R"({"NodeNumber":3,"Hookflash":")" + std::to_string(++flash) + "\"}";
            const Outcome outcome = Run(command, redirection, input);
            EXPECT_EQ(outcome.Status, 3) << command.back() << redirection << outcome.Errors;
            EXPECT_NE(outcome.Errors.find("written"), std::string::npos) << command.back() << outcome.Errors;
        }
    EXPECT_EQ(stores_test::SQL(home / "store.db",
                               "SELECT hookflash FROM style_node WHERE config_id = 1 AND partition_id = 1 "
                               "AND node_number = 3")[0][0],
              std::to_string(flash - 4))
        << "what was applied is said to have been";
}

TEST_F(Hostile_Surroundings, An_Input_That_Cannot_Be_Read_Is_Not_An_Empty_One) {
    ASSERT_EQ(Run({"store", "init", "--store", store}).Status, 0);
    const Strings apply{"store", "apply", "-", "--store", store};
    Write_File(home / "large.reg", "");
    std::filesystem::resize_file(home / "large.reg", std::uintmax_t{65} << 20U);
    const struct {
        Strings Words;
        const char* Redirection;
        int Status;
        const char* Said;
    } cases[] = {
        {apply, "</", 3, "standard input cannot be read: Is a directory"},
        {apply, "<&-", 3, "standard input cannot be read"},
        {apply, "</dev/zero", 3, "larger than 64 MiB"},
        {{"store", "apply", "/", "--store", store}, "", 3, "Is a directory"},
        {{"store", "apply", "/dev/zero", "--store", store}, "", 3, "larger than 64 MiB"},
        {{"play", "-", "--store", store}, "</", 2, "Is a directory"},
        {{"play", "-", "--store", store}, "</dev/zero", 2, "larger than 64 MiB"},
        {{"play", "/dev/zero", "--store", store}, "", 2, "larger than 64 MiB"},
        {{"play", "/", "--store", store}, "", 2, "Is a directory"},
        {{"play", "-", "--store", store, "--strings", "/dev/zero"}, "", 3, "larger than 64 MiB"},
        {{"play", "-", "--store", store, "--registry", "@/large.reg"}, "", 3, "larger than "},
        {{"play", "-", "--store", store, "--reply", "Get_Style_Nodes=/dev/zero"},
         "",
         3,
         "larger than 256 MiB"},
    };
    for (const auto& given : cases)
        Says(Run(Little_Memory, given.Words, given.Redirection), given.Status, given.Said);
}

TEST_F(Hostile_Surroundings, A_Signal_Ends_A_Command_With_What_Has_Changed) {
    ASSERT_EQ(Run({"store", "init", "--store", store}).Status, 0);
    sqlite3* other = nullptr; // makes them wait
    ASSERT_EQ(sqlite3_open((home / "store.db").c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    const auto files = [&] { return std::distance(std::filesystem::directory_iterator(home.String()), {}); };
    const std::pair<Strings, std::string> commands[] = {
        {{"store", "apply", "-", "--store", store}, R"({"NodeNumber":3,"Hookflash":"999"})"},
        {{"store", "revert", "1", "--store", store}, ""},
        {{"play", "-", "--store", store}, "shown 1 1 3\npaste cmbHookFlash 700\nclick cmdApply\nclose\n"}};
    const Outcome unused = Run({"--version"});
    const auto before = files();
    for (const auto& [words, input] : commands)
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
            program_run::Program program(STYLE_EDITOR, words, home, home.String(), input);
            std::this_thread::sleep_for(std::chrono::milliseconds(700));
            const auto start = std::chrono::steady_clock::now();
            program.Send(signal);
            const Outcome outcome = program.End();
            Says(outcome, -signal, "nothing");
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
            EXPECT_EQ(files(), before);
        }
    sqlite3_close(other);
}

TEST_F(Hostile_Surroundings, A_File_Never_Becomes_Standard_Output_Or_Error) {
    int number = 0;
    for (const char* closed : {">&-", "2>&-", ">&- 2>&- <&-"}) {
        std::filesystem::remove(home / "store.db");
        (void)Run({"store", "init", "--store", store}, closed);
        EXPECT_EQ(Run({"store", "export", "--store", store, "--out", "@/" + std::to_string(++number)}, closed)
                      .Status,
                  0);
        EXPECT_EQ(stores_test::SQL(home / "store.db", "PRAGMA integrity_check")[0][0], "ok") << closed;
    }
}

TEST_F(Hostile_Surroundings, A_Limit_Of_File_Sizes_Is_An_Error_Like_A_Full_Disk) {
    ASSERT_EQ(Run({"store", "init", "--nodes", "1000", "--store", store}).Status, 0);
    Says(Run("ulimit -f 8;", {"store", "export", "--store", store, "--out", "@/out.jsonl"}, ""), 3,
         "File too large");
    EXPECT_FALSE(std::filesystem::exists(home / "out.jsonl"));
    Says(Run("ulimit -f 8;", {"store", "init", "--nodes", "1000", "--store", "sqlite:@/new.db"}, ""), 3,
         "File too large");
    EXPECT_FALSE(std::filesystem::exists(home / "new.db"));
}

TEST_F(Hostile_Surroundings, Texts_Of_Others_Do_Not_Act_On_A_Terminal) {
    const std::string evil = "\x1B[2J\xE2\x80\xAE\xC2\x9B";
    ASSERT_EQ(Run({"store", "init", "--store", "sqlite:@/" + evil + ".db"}).Status, 0);
    const Strings commands[] = {{"store", "init", "--store", "sqlite:@/" + evil + ".db"},
                                {"play", evil},
                                {"edit", "--node", evil},
                                {evil},
                                {"store", "apply", "@/" + evil, "--store", store},
                                {"list", evil},
                                {"strings", "check", evil},
                                {"register", "/" + evil},
                                {"play", "-", "--missing", evil},
                                {"play", "-", "--fail", evil}};
    for (const Strings& command : commands) {
        const Outcome outcome = Run(command, "", "click " + evil + "\n");
        EXPECT_NE(outcome.Status, 0) << command.front();
        for (const std::string& said : {outcome.Out, outcome.Errors})
            for (const char* acting : {"\x1B", "\xE2\x80\xAE", "\xC2\x9B"})
                EXPECT_EQ(said.find(acting), std::string::npos) << command.front() << " " << said;
    }
}

TEST_F(Hostile_Surroundings, Each_Message_Names_What_Is_Missing) {
    Says(Run("TMPDIR=/no/such;export TMPDIR;", {"strings", "check", RESOURCES "/language_1.strings"}, ""), 3,
         "TMPDIR");
    Says(Run({"edit", "--node", "-5"}), 2, "0 to 32767");
    Says(Run({"play", "-", "--appdata", "@/\xFF"}), 2, "not UTF-8");
}

// More than a terminal holds at once.
TEST_F(Hostile_Surroundings, A_Long_Paste_Is_One_Edit_In_A_Terminal_Too) {
    std::string text;
    for (int character = 0; character < 16'000; ++character)
        text += "\u00fc";
    const std::string script = "shown 1 1 3\npaste txtDescription " + text +
                               "\nshow txtDescription\npaste cmbHookFlash " + text +
                               "\nshow cmbHookFlash\nclose\n";
    const Outcome bare = Run({"play", "-"}, "", script),
                  terminal = Run({"play", "-", "--terminal"}, "", script);
    EXPECT_EQ(bare.Status, 0) << bare.Errors;
    EXPECT_EQ(terminal.Out, bare.Out);
}

} // namespace
