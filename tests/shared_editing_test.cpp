// The whole editor on a store that it shares: with another person, with other processes, and with a server
// that dies.
#include <csignal>
#include <set>
#include <thread>

#include "editor_files.h"
#include "program_run.h"
#include "stores_test_tools.h"

namespace {

using stores_test::Kind;
using Row_Texts = std::vector<std::string>;
using Texts = std::vector<Row_Texts>;

Lines Parsed(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(Line::parse(line));
    return lines;
}

// Another process.
Lines Other_Program(const std::vector<std::string>& arguments, const std::string& input = "") {
    const Temporary_Folder home;
    const auto outcome = program_run::Run(STYLE_EDITOR, arguments, home, home.String(), input);
    EXPECT_EQ(outcome.Status, 0) << outcome.Errors;
    return Parsed(outcome.Out);
}

class Shared_Editing : public ::testing::TestWithParam<Kind> {
protected:
    Shared_Editing() { stores::Store::Create(place.URL); }

    std::string Hook_Flash() const {
        return place.SQL("SELECT hookflash FROM style_node WHERE config_id = 1 AND partition_id = 1 AND "
                         "node_number = 12")[0][0];
    }
    // What was done to node 12 itself, from the program's own mouth.
    Lines History() const {
        Lines changes;
        for (const Line& change : Other_Program({"store", "history", "--store", place.URL, "--config", "1",
                                                 "--partition", "1", "--node", "12", "--json"}))
            if (change.at("operation") == "Update_Style_Node")
                changes.push_back(change);
        return changes;
    }

    const stores_test::Store_Place place{GetParam()};
    Editor_Session session{place.URL};
};

INSTANTIATE_TEST_SUITE_P(On_A, Shared_Editing, stores_test::Both_Kinds, stores_test::Name_Of_Kind);

TEST_P(Shared_Editing, Who_Saves_Second_Is_Told_Who_Was_First_And_Can_Open_The_Node_Again) {
    session.On_Line = [&](const Line& line) {
        if (line.at("event") == "form") // in the middle of the first edit
            Other_Program({"play", "-", "--store", place.URL},
                          "shown 1 1 12\npaste cmbHookFlash 700\nclick cmdOK\n");
    };
    const Lines lines =
        session.Play("shown 1 1 3\npaste cmbHookFlash 650\nclick cmdApply\nclick cmdApply\nclose\n"
                     "shown 1 1 12\npaste cmbHookFlash 600\npaste cmbRingLimit 7\nshow form\n"
                     "click cmdApply\nshow cmdApply\n"
                     "shown 1 1 12\nshow cmbHookFlash\npaste cmbHookFlash 750\nclick cmdApply\n"
                     "paste cmbHookFlash 800\nclick cmdOK\n",
                     {"--trace"});
    const Lines results = Only(lines, "result");
    ASSERT_EQ(results.size(), 3U);
    EXPECT_TRUE(results[0].at("shown") && results[2].at("shown")) << results;
    EXPECT_EQ(results[1].at("ErrLocation"), "[ZEBud.UDNODES][Busyness_Rules]Save_Changes");
    EXPECT_EQ(results[1].at("ErrDescription").get<std::string>().rfind("Node 12 was changed by ", 0), 0U)
        << results[1];
    EXPECT_EQ(Last_Control(lines, "cmbHookFlash").at("text"), "700");
    EXPECT_EQ(Hook_Flash(), "800");
    Row_Texts flashes;
    for (const Line& change : History())
        flashes.push_back(change.at("old").at("hookflash").get<std::string>() + ">" +
                          change.at("new").at("hookflash").get<std::string>());
    EXPECT_EQ(flashes, (Row_Texts{"500>700", "700>750", "750>800"}));
    EXPECT_EQ(place.SQL("SELECT ring_limit FROM partial_detail WHERE config_id = 1 AND partition_id = 1 AND "
                        "node_number = 12"),
              (Texts{{"5"}}))
        << "nothing of the refused save";
}

TEST_P(Shared_Editing, Applied_Lines_Are_News_To_An_Editor_And_Stand_In_The_History) {
    const auto run = [&](std::vector<std::string> words, const std::string& lines) {
        const Temporary_Folder home;
        words.insert(words.end(), {"--store", place.URL});
        const auto outcome = program_run::Run(STYLE_EDITOR, words, home, home.String(), lines);
        EXPECT_EQ(outcome.Status, 0) << outcome.Errors;
        EXPECT_NE(outcome.Out.find("style-editor store revert "), std::string::npos) << outcome.Out;
        return outcome.Out;
    };
    std::string applied;
    session.On_Line = [&](const Line& line) {
        if (line.at("event") == "form")
            applied =
                run({"store", "apply", "-"}, "{\"NodeNumber\":12,\"Hookflash\":700,\"SuperviseID\":0}\n");
    };
    const Lines lines = session.Play("shown 1 1 12\npaste cmbHookFlash 600\nshow form\nclick cmdApply\n");
    EXPECT_EQ(
        Only(lines, "result")[0].at("ErrDescription").get<std::string>().rfind("Node 12 was changed by ", 0),
        0U);
    EXPECT_EQ(Hook_Flash(), "700");
    const std::string number = applied.substr(applied.find("revert ") + 7);
    run({"store", "revert", number.substr(0, number.find(' '))}, "");
    EXPECT_EQ(Hook_Flash(), "500");
    const auto noted =
        place.SQL("SELECT record, old_values IS NULL, new_values IS NULL FROM change_log WHERE "
                  "operation LIKE 'store %' ORDER BY change, record DESC");
    EXPECT_EQ(noted, (Texts{{"style_node", "0", "0"},
                            {"partial_detail", "0", "1"},
                            {"style_node", "0", "0"},
                            {"partial_detail", "1", "0"}}));
}

TEST_P(Shared_Editing, Processes_That_Save_At_The_Same_Time_Lose_Nothing) {
    constexpr int Processes = 4, Rounds = 5;
    std::array<Lines, Processes> played;
    {
        std::vector<std::jthread> threads;
        for (int process = 0; process < Processes; ++process)
            threads.emplace_back([&, process] {
                std::string script;
                for (int round = 0; round < Rounds; ++round)
                    for (const std::string& node :
                         {std::to_string(process == 0 ? 8 : process), std::string("12")})
                        script += "shown 1 1 " + node + "\npaste cmbHookFlash " +
                                  std::to_string(100 + 10 * process + round) + "\npaste txtDescription \"" +
                                  std::to_string(process) + "/" + std::to_string(round) + "\"\nclick cmdOK\n";
                played[static_cast<std::size_t>(process)] =
                    Other_Program({"play", "-", "--store", place.URL}, script);
            });
    }
    std::size_t saved = 0;
    for (const Lines& lines : played) {
        ASSERT_EQ(lines.size(), 2U * Rounds);
        for (std::size_t job = 0; job < lines.size(); ++job) {
            const bool is_own = job % 2 == 0;
            EXPECT_TRUE(
                lines[job].at("shown") ||
                (!is_own &&
                 lines[job].at("ErrDescription").get<std::string>().starts_with("Node 12 was changed by")))
                << lines[job];
            saved += !is_own && lines[job].at("shown");
        }
    }
    const Lines changes = History();
    EXPECT_GE(changes.size(), saved) << "a refusal may come between the writes of a save";
    EXPECT_GT(saved, 0U);
    for (std::size_t change = 1; change < changes.size(); ++change)
        EXPECT_EQ(changes[change].at("old"), changes[change - 1].at("new")) << "each saw the one before";
    EXPECT_EQ(changes.back().at("new").at("hookflash"), Hook_Flash());
}

TEST(Shared_History, Cannot_Be_Forged_By_A_Text) {
    const Editor_Session session;
    const std::string label = "x\nChange 99, by root@desk\r\x1B[2J\u202E\u2028\u200B\u0085\"\\";
    std::string literal;
    for (const char character : label)
        literal += character == '\'' ? "''" : std::string(1, character);
    stores_test::SQL(
        session.Folder() / "store.db",
        "UPDATE node_entry SET label = '" + literal +
            "' WHERE config_id = 1 AND partition_id = 1;"
            "INSERT INTO change_log VALUES (77, 1, '\n1', 'a\nb', 'c\td', 'e', '\u202E', 'r', 1, "
            "1, 3, NULL, 'no json\n', NULL)");
    const Temporary_Folder home;
    const std::string script = "shown 1 1 12\npaste cmbHookFlash 600\nclick cmdOK\n";
    program_run::Run(STYLE_EDITOR, {"play", "-", "--store", session.Store()}, home, home.String(), script);
    const auto printed =
        program_run::Run(STYLE_EDITOR, {"store", "history", "--store", session.Store()}, home, home.String());
    EXPECT_NE(
        printed.Out.find(
            R"(label: "x\u000aChange 99, by root@desk\u000d\u001b[2J\u202e\u2028\u200b\u0085\"\\" -> )"),
        std::string::npos)
        << printed.Out;
    EXPECT_NE(printed.Out.find("Change 77, \\u000a1 UTC, by a\\u000ab (database user c\\u0009d): \\u202e\n"
                               "  r, configuration 1, partition 1, node 3 (broken: changed_at changed_by "
                               "database_user record old_values)\n    \"no json\\u000a\" -> null\n"),
              std::string::npos)
        << printed.Out;
    for (const std::string hidden : {"\r", "\x1B", "\u202E", "\u2028", "\u200B", "\u0085", "\nChange 99"})
        EXPECT_EQ(printed.Out.find(hidden), std::string::npos);
    const auto lines = program_run::Run(
        STYLE_EDITOR, {"store", "history", "--store", session.Store(), "--json"}, home, home.String());
    EXPECT_TRUE(std::all_of(lines.Out.begin(), lines.Out.end(),
                            [](char c) { return c == '\n' || (c >= ' ' && c < 127); }));
    EXPECT_EQ(Parsed(lines.Out).size(), 18U) << lines.Out;
}

// --- a server that dies in the middle of a save

constexpr const char* Writes[] = {"Update_Style_Node",  "Delete_Partial_Detail", "Delete_Full_Detail",
                                  "Insert_Full_Detail", "Update_Node_Entry",     "Get_Style_Nodes"};
constexpr std::size_t Reading = 5;

class Server_Faults : public ::testing::Test {
protected:
    // Node 12 is made a Full one; a Full record is in the way, so that every write has something to do.
    static constexpr const char* Script =
        "shown 1 1 12\npaste txtDescription new\nclick optFull\nclick cmdApply\n"
        "answer discard\nclose\n"
        "shown 1 1 12\npaste txtDescription newer\nclick optFull\nclick cmdOK\n";

    Server_Faults() {
        stores::Store::Create(base);
        server.SQL(
            base,
            "INSERT INTO full_detail (config_id, partition_id, node_number) VALUES (1, 1, 12);"
            "CREATE FUNCTION fault() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN EXECUTE format('COPY "
            "(SELECT "
            "1) TO PROGRAM %L', 'kill -' || TG_ARGV[0] || ' ' || pg_backend_pid()); RETURN NULL; END $$");
    }
    std::string Copy() {
        const auto slash = base.rfind('/', base.find('?'));
        return server.New_Database("TEMPLATE " + base.substr(slash + 1, base.find('?') - slash - 1)) +
               "&connect_timeout=2";
    }
    // Everything that a save writes, but for the time.
    Texts State(const std::string& url) const {
        Texts state;
        for (const std::string table : {"style_node", "partial_detail", "full_detail", "change_log"})
            for (Row_Texts& row :
                 server.SQL(url, "SELECT * FROM (SELECT '" + table + "', " +
                                     (table == "change_log" ? "operation" : "*") + " FROM " + table +
                                     " WHERE config_id = 1 AND node_number = 12 AND partition_id = 1) t"))
                state.push_back(std::move(row));
        state.push_back(
            server.SQL(url, "SELECT label, changed LIKE '3/18/2024%' FROM node_entry WHERE config_id = 1 AND "
                            "partition_id = 1 AND node_number = 12")[0]);
        return state;
    }
    // Calls `act` when the first save comes to its n-th write, and `restore` when the first job is over.
    Lines Play(const std::string& url, const std::function<void(std::size_t)>& act,
               const std::function<void()>& restore) {
        Editor_Session session(url);
        bool is_saving = false, is_over = false;
        session.On_Line = [&](const Line& line) {
            if (line.at("event") == "result" && !std::exchange(is_over, true))
                restore();
            if (line.at("event") != "call" || is_over)
                return;
            is_saving |= line.at("operation") == "Prepare_Label";
            const auto* const write =
                std::find(std::begin(Writes), std::end(Writes), line.at("operation").get<std::string>());
            if (is_saving && write != std::end(Writes))
                act(static_cast<std::size_t>(write - Writes));
        };
        return Only(session.Play(Script, {"--trace"}), "result");
    }
    // The states before each write and after the last.
    std::vector<Texts> Prefixes() {
        const std::string url = Copy();
        std::vector<Texts> states;
        const Lines results = Play(
            url, [&](std::size_t) { states.push_back(State(url)); }, [&] { states.push_back(State(url)); });
        EXPECT_TRUE(results.at(0).at("shown") && results.at(1).at("shown")) << results;
        return states;
    }
    // The save fails at that write, is reported, leaves one of the states allowed, and works the next time.
    void Check(std::size_t failing, const std::set<Texts>& allowed,
               const std::function<void(std::string)>& prepare, const std::function<void(std::string)>& act,
               const std::function<void(std::string)>& restore) {
        SCOPED_TRACE(Writes[failing]);
        const std::string url = Copy();
        prepare(url);
        Texts state;
        const auto strike = [&](std::size_t write) {
            if (write == failing)
                act(url);
        };
        const Lines results = Play(url, strike, [&] {
            restore(url);
            state = State(url);
            server.SQL(url, "DROP TRIGGER IF EXISTS fault ON change_log");
        });
        ASSERT_EQ(results.size(), 2U);
        EXPECT_EQ(results[0].at("ErrLocation").get<std::string>().substr(0, 4), "[ZEB") << results[0];
        EXPECT_TRUE(results[0].at("ErrLocation").get<std::string>().ends_with("]Save_Changes")) << results[0];
        EXPECT_EQ(results[0].at("ErrDescription").get<std::string>().rfind("The store postgresql://", 0), 0U)
            << results[0];
        EXPECT_TRUE(allowed.contains(state)) << ::testing::PrintToString(state);
        EXPECT_TRUE(results[1].at("shown")) << results[1];
        EXPECT_EQ(
            server.SQL(
                url,
                "SELECT label FROM node_entry WHERE config_id = 1 AND partition_id = 1 AND node_number = "
                "12"),
            (Texts{{"newer"}}));
    }
    void Set_Trap(const std::string& url, const std::string& when, const std::string& signal,
                  std::size_t write) const {
        server.SQL(url, "CREATE CONSTRAINT TRIGGER fault AFTER INSERT ON change_log " + when +
                            " FOR EACH ROW WHEN (NEW.operation = '" + Writes[write] +
                            "') EXECUTE FUNCTION fault(" + signal + ")");
    }

    Private_Server& server = Private_Server::Get();
    const std::string base = server.New_Database();
    const std::function<void(std::string)> nothing = [](const std::string&) {};
};

TEST_F(Server_Faults, A_Server_That_Is_Gone_Before_A_Write_Leaves_The_Writes_Before_It) {
    const auto states = Prefixes();
    ASSERT_EQ(states.size(), std::size(Writes) + 1);
    EXPECT_EQ(std::set<Texts>(states.begin(), states.end()).size(), std::size(Writes))
        << "only the reading changes nothing";
    for (std::size_t write = 0; write <= Reading; ++write) {
        Check(
            write, {states[write]}, nothing, [&](const std::string&) { server.Kill(); },
            [&](const std::string&) { server.Start(); });
        Check(
            write, {states[write]}, nothing,
            [&](const std::string& url) {
                server.SQL(
                    url,
                    "SELECT pg_terminate_backend(pid, 5000) FROM pg_stat_activity WHERE application_name = "
                    "'style-editor'");
                std::filesystem::rename(server.Socket(), server.Socket() + ".away");
            },
            [&](const std::string&) { std::filesystem::rename(server.Socket() + ".away", server.Socket()); });
    }
}

TEST_F(Server_Faults, A_Server_That_Dies_Or_Stands_Still_In_A_Write_Leaves_It_Undone) {
    const auto states = Prefixes();
    const auto wait = [&](const std::string&) { server.Wait(); };
    for (std::size_t write = 0; write < Reading; ++write) {
        Check(
            write, {states[write]}, [&](const std::string& url) { Set_Trap(url, "", "9", write); }, nothing,
            wait);
        Check(
            write, {states[write], states[write + 1]},
            [&](const std::string& url) { Set_Trap(url, "DEFERRABLE INITIALLY DEFERRED", "9", write); },
            nothing, wait);
        Check(
            write, {states[write]}, [&](const std::string& url) { Set_Trap(url, "", "19", write); }, nothing,
            [&](const std::string& url) {
                for (const Row_Texts& row :
                     server.SQL(url, "SELECT pid FROM pg_stat_activity WHERE application_name = "
                                     "'style-editor'"))
                    kill(std::stoi(row[0]), SIGKILL);
                server.Wait();
            });
    }
}

} // namespace
