// A partition as JSON Lines and back: which lines are refused and why, what a line changes besides its own
// values, that all of it or nothing is written, and that the file which undoes it does.
#include <fstream>
#include <sstream>

#include <sys/stat.h>

#include "editor_session.h"
#include "sqlite_rows.h"

namespace {

namespace fs = std::filesystem;

class Bulk : public ::testing::Test {
protected:
    std::string Export() { return session.Command(Command("export")); }
    // Applies lines to partition 2, whose nodes are 0 Blind, 3 Partial, 7 Full, 9 Enhanced.
    std::string Apply(const std::string& lines, const std::vector<std::string>& options = {"--dry-run"}) {
        auto command = Command("apply");
        command.emplace_back("-");
        command.insert(command.end(), options.begin(), options.end());
        return session.Command(command, lines);
    }
    std::string Undo_File() const { return (session.Folder() / "undo").string(); }

    std::string File() const { return session.Folder() / "store.db"; }
    // Every row of the tables that hold nodes.
    stores_test::Rows Rows() const {
        stores_test::Rows rows;
        for (const std::string table : {"style_node", "node_entry", "partial_detail", "full_detail",
                                        "dialcontinue_detail", "enhanced_detail"})
            for (const auto& row : stores_test::SQL(File(), "SELECT '" + table + "', * FROM " + table +
                                                                " ORDER BY 1, 2, 3, 4, 5"))
                rows.push_back(row);
        return rows;
    }

    Editor_Session session;

private:
    std::vector<std::string> Command(const char* verb) const {
        return {"store", verb, "--store", session.Store(), "--partition", "2"};
    }
};

TEST_F(Bulk, Refuses_Lines_By_The_Rules_Of_The_Dialog) {
    const struct {
        const char *Line, *Reason;
    } cases[] = {
        {"12", "it is no JSON object"},
        {"{\"NodeNumber\":3", "it is no JSON: "},
        {"{\"NodeNumber\":3,\"Transfer\":\"\xFF\"}", "it is no JSON: "},
        {R"({"NodeNumber":3,"NodeNumber":7})", R"("NodeNumber" stands in it twice)"},
        {R"({"Hookflash":"500"})", R"("NodeNumber" is missing or no number from 0 to 32767)"},
        {R"({"NodeNumber":"3"})", R"("NodeNumber" is missing or no number)"},
        {R"({"NodeNumber":-1})", R"("NodeNumber" is missing or no number)"},
        {R"({"NodeNumber":4})", "there is no node 4 in this partition"},
        {R"({"NodeNumber":3,"Label":"x"})", R"("Label" is no value of a node)"},
        {R"({"NodeNumber":3,"Partial":{"Busy1On":"1"}})",
         R"("Busy1On" is no value of a node's Partial record)"},
        {R"({"NodeNumber":3,"Hookflash":[1]})",
         R"("Hookflash" is neither a text nor a whole number nor null)"},
        {R"({"NodeNumber":3,"Partial":"x"})", R"("Partial" is neither an object nor null)"},
        // The fields' own rules, as they judge what is pasted and left.
        {R"({"NodeNumber":3,"NodeDescription":"1234567890123456789012345678901"})", "at most 30 characters"},
        {R"({"NodeNumber":3,"NodeDescription":"it''s"})",
         "no double quotes and no consecutive single quotes"},
        {R"({"NodeNumber":3,"NodeDescription":"say \"so\""})", "no double quotes"},
        {R"({"NodeNumber":3,"Hookflash":"2001"})",
         R"(a number from 50 to 2000, at most 4 characters; the field makes it "2000")"},
        {R"({"NodeNumber":3,"Hookflash":49})", R"(the field makes it "50")"},
        {R"({"NodeNumber":3,"Hookflash":""})", R"(the field makes it "50")"},
        {R"({"NodeNumber":3,"Hookflash":" 500"})", "a number from 50 to 2000"},
        {R"({"NodeNumber":3,"Hookflash":"9e99"})", "the editor fails on it: Overflow"},
        {R"({"NodeNumber":3,"Transfer":"12345678"})",
         "at most 7 characters, a digit or one of ,#!* as the last"},
        {R"({"NodeNumber":3,"Disconnection":"12a"})", "at most 7 characters"},
        {R"({"NodeNumber":3,"ThresholdTypeID":"9"})", "one of the thresholds 7, 1, 2, 3, 4, 5, 6, 8"},
        {R"({"NodeNumber":3,"SuperviseID":"5"})",
         "one of 0 BLIND, 1 PARTIAL, 2 FULL, 3 DIALCONTINUE, 4 ENHANCED"},
        {R"({"NodeNumber":3,"SuperviseID":"01"})", "one of 0 BLIND"},
        {R"({"NodeNumber":3,"Transfer":null})", "write \"\" for an empty one"},
        {R"({"NodeNumber":3,"Partial":{"RingOff":"10001"}})",
         R"(Partial.RingOff "10001": a number from 50 to 10000)"},
        {R"({"NodeNumber":3,"Partial":{"NumberRetries":"-3"}})", "a number from 1 to 30"},
        {R"({"NodeNumber":9,"Enhanced":{"RingLimit":"21"}})", "a number from 1 to 20"},
        // What follows from the rest, and records that the type does not have.
        {R"({"NodeNumber":3,"SuperviseCaption":"FULL"})", "it follows from the other values"},
        {R"({"NodeNumber":3,"EntryChanged":"now"})", "it follows from the other values"},
        {R"({"NodeNumber":3,"Partial":{"SuperviseID":"2"}})", "it follows from the other values"},
        {R"({"NodeNumber":3,"Partial":null})", "a node of this type has the record"},
        {R"({"NodeNumber":3,"Full":{"RingOn":"100"}})", "only the record of the node's own type"},
        {R"({"NodeNumber":0,"Full":{"RingOn":"100"}})", "only the record of the node's own type"},
        {R"({"NodeNumber":0,"SuperviseID":"2","Full":{"RingOn":"100"}})",
         R"(Full.RingOff null: a new record needs a text)"},
        {R"({"NodeNumber":3,"SuperviseID":"0","Partial":{"RingOn":"100"}})",
         "only the record of the node's own type"},
    };
    const auto before = Rows();
    for (const auto& row : cases) {
        const std::string out = Apply("\n" + std::string(row.Line) + "\n", {"--undo", Undo_File()});
        EXPECT_EQ(session.Status(), 1) << row.Line;
        EXPECT_TRUE(out.starts_with("line 2")) << out;
        EXPECT_NE(out.find(row.Reason), std::string::npos) << row.Line << "\n" << out;
        EXPECT_NE(session.Errors().find("nothing was changed: "), std::string::npos) << session.Errors();
    }
    EXPECT_EQ(Rows(), before);
    EXPECT_FALSE(fs::exists(Undo_File()));
}

TEST_F(Bulk, Shows_Every_Change_In_A_Dry_Run_And_Makes_None) {
    const auto before = Rows();
    const std::string lines = R"({"NodeNumber":7,"Hookflash":700,"NodeDescription":"Workshop"}
{"NodeNumber":3,"SuperviseID":"2","Full":{"RingOn":"100"},"NodeDescription":"\u001b[2J"}
{"NodeNumber":0,"SuperviseID":"9"}
{"NodeNumber":7}
)";
    EXPECT_EQ(Apply(lines), R"(line 1, node 7: Hookflash "600" -> "700"
line 2, node 3: NodeDescription "Warehouse" -> "\u001b[2J"
line 2, node 3: SuperviseID "1" -> "2"
line 2, node 3: SuperviseCaption "PARTIAL" -> "FULL"
line 2, node 3: EntryLabel "Warehouse" -> "\u001b[2J"
line 2, node 3: Partial.SuperviseID "1" -> (none)
line 2, node 3: Partial.Retrieve "!" -> (none)
line 2, node 3: Partial.BusyRetry "4" -> (none)
line 2, node 3: Partial.NumberRetries "3" -> (none)
line 2, node 3: Partial.RingLimit "5" -> (none)
line 2, node 3: Partial.BusyOn "500" -> (none)
line 2, node 3: Partial.BusyOff "500" -> (none)
line 2, node 3: Partial.RingOn "2000" -> (none)
line 2, node 3: Partial.RingOff "4000" -> (none)
line 2, node 3: Full.SuperviseID (none) -> "2"
line 2, node 3: Full.Retrieve (none) -> "!"
line 2, node 3: Full.BusyRetry (none) -> "4"
line 2, node 3: Full.NumberRetries (none) -> "3"
line 2, node 3: Full.RingLimit (none) -> "5"
line 2, node 3: Full.BusyOn (none) -> "500"
line 2, node 3: Full.BusyOff (none) -> "500"
line 2, node 3: Full.RingOn (none) -> "100"
line 2, node 3: Full.RingOff (none) -> "4000"
line 3, node 0: refused: SuperviseID "9": one of 0 BLIND, 1 PARTIAL, 2 FULL, 3 DIALCONTINUE, 4 ENHANCED
line 3, node 0: SuperviseID "0" -> "9"
line 4: refused: node 7 stands in line 1 already
)");
    EXPECT_EQ(session.Status(), 1);
    EXPECT_EQ(Apply("{\"NodeNumber\":7,\"Hookflash\":700}"),
              "line 1, node 7: Hookflash \"600\" -> \"700\"\n1 node would change\n");
    // The dialog takes it, the store does not.
    Apply(R"({"NodeNumber":7,"NodeDescription":"\u0001"})");
    EXPECT_EQ(session.Status(), 3);
    EXPECT_EQ(session.Errors(), "style-editor: nothing was changed: line 1, node 7: A text holds a character "
                                "that cannot be stored\n");
    EXPECT_EQ(Rows(), before);
}

// The records are the ones that the editor's own save leaves.
TEST_F(Bulk, Changes_What_The_Editor_Would) {
    Editor_Session by_hand;
    const Lines played = by_hand.Play(
        "shown 1 2 3\nclick optEnhanced\npaste cmbHookFlash 700\npaste txtRetrieve 1,2\nclick cmdOK\n"
        "shown 1 2 7\nclick optBlind\npaste txtDescription \"Werkstatt \u00fc\"\nclick cmdOK");
    ASSERT_TRUE(Only(played, "refused").empty());
    Apply(R"({"NodeNumber":3,"SuperviseID":4,"Hookflash":"700","Enhanced":{"Retrieve":"1,2"}})"
          "\n{\"NodeNumber\":7,\"SuperviseID\":\"0\",\"NodeDescription\":\"Werkstatt \u00fc\"}",
          {"--undo", Undo_File()});
    ASSERT_EQ(session.Status(), 0) << session.Errors();
    const auto wanted = by_hand.Command({"store", "export", "--store", by_hand.Store(), "--partition", "2"});
    EXPECT_EQ(Export(), wanted);
    // Through the editor, the changed node is the current one.
    const Lines seen = session.Play("shown 1 2 3\nshow txtRetrieve lblRecordPosition");
    EXPECT_EQ(Last_Control(seen, "txtRetrieve").at("text"), "1,2");
    EXPECT_EQ(Last_Control(seen, "lblRecordPosition").at("caption"), "1 of 3");
}

TEST_F(Bulk, Undoes_Everything_With_The_File_That_It_Writes) {
    // What no dialog would write has to come back too.
    stores_test::SQL(
        File(),
        "UPDATE style_node SET hookflash = NULL, transfer = '99999999', supervise_id = '9' WHERE node_number "
        "= 9; "
        "UPDATE node_entry SET label = 'other' WHERE node_number = 3; "
        "UPDATE partial_detail SET retrieve = NULL, supervise_id = NULL WHERE node_number = 3; "
        "INSERT INTO full_detail (config_id, partition_id, node_number, ring_on) VALUES (1, 2, 3, 'stray')");
    const auto before = Rows();
    const std::string exported = Export();
    Apply(exported, {"--undo", Undo_File()});
    EXPECT_EQ(session.Status(), 0) << "an unchanged partition: " << session.Errors();
    EXPECT_FALSE(fs::exists(Undo_File()));
    const std::string lines = R"({"NodeNumber":3,"SuperviseID":"0","NodeDescription":"changed"}
{"NodeNumber":9,"Hookflash":"500","Transfer":"","SuperviseID":"1","Partial":{"Retrieve":"!","BusyRetry":1,"NumberRetries":1,"RingLimit":1,"BusyOn":50,"BusyOff":50,"RingOn":50,"RingOff":50}})";
    Apply(lines, {"--undo", Undo_File()});
    ASSERT_EQ(session.Status(), 0) << session.Errors();
    EXPECT_NE(Rows(), before);
    struct stat rights {};
    ASSERT_EQ(::stat(Undo_File().c_str(), &rights), 0);
    EXPECT_EQ(rights.st_mode & 0777U, 0600U);

    Apply(lines, {"--undo", Undo_File()});
    EXPECT_EQ(session.Status(), 0) << "nothing is left to change";
    const auto changed = Rows();
    Apply(R"({"NodeNumber":3,"Hookflash":"999"})", {"--undo", Undo_File()});
    EXPECT_EQ(session.Status(), 3);
    EXPECT_NE(session.Errors().find("exists already"), std::string::npos) << session.Errors();
    EXPECT_EQ(Rows(), changed);

    std::ifstream undo(Undo_File());
    const std::string saved{std::istreambuf_iterator<char>(undo), {}};
    EXPECT_EQ(Apply(saved, {"--undo", Undo_File() + "2"}).find("nothing to change"), std::string::npos);
    EXPECT_EQ(session.Status(), 1) << "without --restore the rules hold";
    Apply(saved, {"--restore", "--undo", Undo_File() + "2"});
    EXPECT_EQ(session.Status(), 0) << session.Errors();
    EXPECT_EQ(Rows(), before);
    EXPECT_EQ(Export(), exported);
}

TEST_F(Bulk, Says_What_It_Cannot_Do) {
    Apply("{\"NodeNumber\":3}", {});
    EXPECT_EQ(session.Status(), 2);
    EXPECT_NE(session.Errors().find("--undo FILE"), std::string::npos) << session.Errors();
    session.Command({"store", "apply", "/none/such", "--store", session.Store()});
    EXPECT_EQ(session.Status(), 3);
    const std::string file = session.File("taken", "mine");
    session.Command({"store", "export", "--store", session.Store(), "--out", file});
    EXPECT_EQ(session.Status(), 3);
    EXPECT_NE(session.Errors().find("exists already"), std::string::npos) << session.Errors();
    EXPECT_EQ(session.Command({"store", "export", "--store", session.Store(), "--partition", "77"}), "");
    EXPECT_EQ(session.Status(), 0);
    // Somebody else is writing.
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open((session.Folder() / "store.db").c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    Apply(R"({"NodeNumber":3,"Hookflash":"999"})", {"--undo", Undo_File()});
    sqlite3_close(other);
    EXPECT_EQ(session.Status(), 3);
    EXPECT_NE(session.Errors().find("locked"), std::string::npos) << session.Errors();
    EXPECT_FALSE(fs::exists(Undo_File()));
}

} // namespace
