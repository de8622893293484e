// The program on a store file whose disk fails, or which ends in the middle of a save: what is in the store
// afterwards is what some first operations of the save have written, and the database finds itself sound.
#include <algorithm>
#include <map>

#include "program_run.h"
#include "sqlite_rows.h"

namespace {

using Strings = std::vector<std::string>;
using program_run::Outcome;

// A new type: the node, the former type's record away, the new one's in, the node list's entry.
constexpr const char* Script =
    "shown 1 2 7\nclick optEnhanced\npaste txtDescription saved\nclick cmdApply\nclose\n";
const Strings Operations{"Update_Style_Node", "Delete_Full_Detail", "Delete_Enhanced_Detail",
                         "Insert_Enhanced_Detail", "Update_Node_Entry"};

class Store_Faults : public ::testing::Test {
protected:
    Store_Faults() {
        EXPECT_EQ(Run({"store", "init", "--store", Store()}).Status, 0);
        std::filesystem::copy_file(Path(), home / "pristine.db");
    }

    std::string Path() const { return home / "store.db"; }
    std::string Store() const { return "sqlite:" + Path(); }
    Outcome Run(const Strings& arguments) const {
        return program_run::Run(STYLE_EDITOR, arguments, home, home.String(), Script);
    }

    // The program on a fresh store with `settings` in the environment.
    Outcome On_Fresh_Store(const std::map<std::string, std::string>& settings, Strings arguments) const {
        for (const char* rest : {"-journal", "-wal", "-shm"})
            std::filesystem::remove(Path() + rest);
        std::filesystem::copy_file(home / "pristine.db", Path(),
                                   std::filesystem::copy_options::overwrite_existing);
        for (const auto& [name, value] : settings)
            setenv(name.c_str(), value.c_str(), 1);
        arguments.insert(arguments.end(), {"--store", Store()});
        const Outcome outcome = Run(arguments);
        for (const auto& [name, value] : settings)
            unsetenv(name.c_str());
        return outcome;
    }

    Outcome Save(const std::map<std::string, std::string>& settings, const Strings& options = {}) const {
        Strings arguments{"play", "-"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return On_Fresh_Store(settings, arguments);
    }

    std::map<std::string, std::string> Counting() const {
        return {{"LD_PRELOAD", FAILING_WRITES},
                {"FAILING_FILE", "store.db"},
                {"FAILING_COUNT", home / "count"},
                {"ASAN_OPTIONS", "verify_asan_link_order=0:intercept_tls_get_addr=0"}};
    }
    int Calls() const { return std::stoi(Bytes_Of_File(home / "count")); }
    static std::map<std::string, std::string> Failing(std::map<std::string, std::string> settings,
                                                      const char* how, int call) {
        settings["FAILING_HOW"] = how;
        settings["FAILING_AT"] = std::to_string(call);
        return settings;
    }
    static bool Ends_The_Program(const std::string& how) { return how == "kill" || how == "torn"; }

    // What is in the tables of nodes; the time of the change only as whether it is another one.
    std::string State() const {
        EXPECT_EQ(stores_test::SQL(Path(), "PRAGMA integrity_check"), (stores_test::Rows{{"ok"}}));
        std::string state;
        for (const char* table : {"style_node", "full_detail", "enhanced_detail"})
            for (const auto& row : stores_test::SQL(Path(), std::string("SELECT * FROM ") + table))
                for (const auto& value : row)
                    state += value + "|";
        for (const auto& row : stores_test::SQL(Path(), "SELECT label FROM node_entry"))
            state += row[0] + "|";
        return state;
    }

    // After none, one, two ... of the save's operations.
    Strings States() const {
        Strings states;
        for (const std::string& operation : Operations) {
            EXPECT_EQ(Save({}, {"--fail", operation}).Status, 0);
            states.push_back(State());
        }
        EXPECT_EQ(Save({}).Status, 0);
        states.push_back(State());
        return states;
    }

    const Temporary_Folder home;
};

TEST_F(Store_Faults, Leave_What_The_First_Operations_Have_Written) {
    const Strings states = States();
    ASSERT_EQ(Save(Counting()).Status, 0);
    const int calls = Calls();
    ASSERT_GT(calls, 4 * static_cast<int>(Operations.size())) << "the writes are not seen";
    std::map<std::string, std::size_t> seen;
    for (const char* how : {"kill", "torn", "full", "io"})
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(std::string(how) + " at call " + std::to_string(call));
            const Outcome outcome = Save(Failing(Counting(), how, call));
            const bool ends = Ends_The_Program(how);
            EXPECT_EQ(outcome.Status, ends ? -SIGKILL : 0) << outcome.Errors;
            const auto state = std::find(states.begin(), states.end(), State());
            ASSERT_NE(state, states.end()) << "no prefix of the save";
            ++seen[*state];
            // What has not been written is told.
            const bool success = outcome.Out.find("\"ErrDescription\":\"\"") != std::string::npos;
            EXPECT_TRUE(ends || state == states.end() - 1 || !success) << outcome.Out;
        }
    EXPECT_GE(seen.size(), 4U) << "the faults do not reach the operations";
}

TEST_F(Store_Faults, Leave_All_Or_Nothing_Of_Applied_Lines) {
    const std::string before = State();
    const std::string lines = home / "lines";
    Write_File(lines, "{\"NodeNumber\":1,\"SuperviseID\":4,\"NodeDescription\":\"one\"}\n{\"NodeNumber\":2,"
                      "\"Hookflash\":99}\n");
    const auto apply = [&](const std::map<std::string, std::string>& settings) {
        return On_Fresh_Store(settings, {"store", "apply", lines});
    };
    ASSERT_EQ(apply(Counting()).Status, 0);
    const std::string after = State();
    ASSERT_NE(after, before);
    const int calls = Calls();
    ASSERT_GT(calls, 4);
    for (const char* how : {"kill", "torn", "full", "io"})
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(std::string(how) + " at call " + std::to_string(call));
            const Outcome outcome = apply(Failing(Counting(), how, call));
            const std::string state = State();
            EXPECT_TRUE(state == before || state == after);
            if (!Ends_The_Program(how)) {
                EXPECT_EQ(outcome.Status, state == after ? 0 : 3) << outcome.Errors;
                EXPECT_NE(
                    outcome.Errors.find(state == after ? "2 nodes were changed" : "nothing was changed: "),
                    std::string::npos)
                    << outcome.Errors;
            }
        }
}

} // namespace
