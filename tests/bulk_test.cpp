// A partition as JSON Lines and back: which lines are refused and why, what a line changes besides its own
// values, that all of it or nothing is written, that nobody's change is lost, and what takes it back.
#include <fstream>
#include <sstream>

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
    // Runs the command that an earlier one has named in its last line.
    std::string Take_Back(const std::string& out, const std::vector<std::string>& options = {}) {
        const auto start = out.rfind("style-editor store revert ");
        if (start == std::string::npos) {
            ADD_FAILURE() << "no command: " << out << session.Errors();
            return "";
        }
        std::istringstream words(out.substr(start));
        std::vector<std::string> command;
        for (std::string word; words >> word;)
            command.push_back(word);
        command.erase(command.begin());
        command.insert(command.end(), options.begin(), options.end());
        return session.Command(command);
    }

    std::string File() const { return session.Folder() / "store.db"; }
    // Every row of the tables that hold nodes, but for the time of a change.
    stores_test::Rows Rows() const { return Rows(session); }
    static stores_test::Rows Rows(const Editor_Session& of) {
        stores_test::Rows rows;
        for (const std::string table : {"style_node", "node_entry", "partial_detail", "full_detail",
                                        "dialcontinue_detail", "enhanced_detail"})
            for (auto row :
                 stores_test::SQL(of.Folder() / "store.db",
                                  "SELECT '" + table + "', * FROM " + table + " ORDER BY 1, 2, 3, 4, 5")) {
                if (table == "node_entry")
                    row.pop_back();
                rows.push_back(row);
            }
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
        {"12", "a JSON object is expected"},
        {"{\"NodeNumber\":3", "line 2, column 16: refused: unexpected end of input; expected '}'"},
        {"{\"NodeNumber\":3,\"Transfer\":\"\xFF\"}", "line 2, column"},
        {R"({"NodeNumber":3,"NodeNumber":7})", R"("NodeNumber" is given twice)"},
        {R"({"Hookflash":"500"})", R"("NodeNumber" is missing or no number from 0 to 32767)"},
        {R"({"NodeNumber":"x"})", R"("NodeNumber" is missing or no number)"},
        {R"({"NodeNumber":3,"Change":"new"})", R"("Change" is no number of a change)"},
        {R"({"NodeNumber":3,"Hookflash":1e999})", "line 2"},
        {R"({"NodeNumber":-1})", R"("NodeNumber" is missing or no number)"},
        {R"({"NodeNumber":4})", "node 4 does not exist in this partition"},
        {R"({"NodeNumber":3,"Label":"x"})", R"("Label" is no value of a node)"},
        {R"({"NodeNumber":3,"Partial":{"Busy1On":"1"}})",
         R"("Busy1On" is no value of a node's Partial record)"},
        {R"({"NodeNumber":3,"Hookflash":[1]})", R"("Hookflash" has to be a text, a whole number or null)"},
        {R"({"NodeNumber":3,"Partial":"x"})", R"("Partial" has to be an object or null)"},
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
        {R"({"NodeNumber":3,"ThresholdTypeID":"9"})",
         R"("9": there is no such threshold; there are 7 Standard, 1 Very low, 2 Low, 3 Medium low)"},
        {R"({"NodeNumber":3,"SuperviseID":"5"})", "there is no such supervised type; there are 0 BLIND, 1 "
                                                  "PARTIAL, 2 FULL, 3 DIALCONTINUE, 4 ENHANCED"},
        {R"({"NodeNumber":3,"ThresholdTypeID":"very\u001blow"})",
         R"("very\u001blow": there is no such threshold)"},
        {R"({"NodeNumber":3,"SuperviseID":"Half"})", "there is no such supervised type"},
        {R"({"NodeNumber":3,"SuperviseID":"01"})", "there are 0 BLIND"},
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
         R"("Full": a new record needs all values; give Retrieve, BusyRetry, NumberRetries)"},
        {R"({"NodeNumber":3,"SuperviseID":"0","Partial":{"RingOn":"100"}})",
         "only the record of the node's own type"},
    };
    const auto before = Rows();
    for (const auto& row : cases) {
        const std::string out = Apply("\n" + std::string(row.Line) + "\n", {});
        EXPECT_EQ(session.Status(), 1) << row.Line;
        EXPECT_TRUE(out.starts_with("line 2")) << out;
        EXPECT_NE(out.find(row.Reason), std::string::npos) << row.Line << "\n" << out;
        EXPECT_EQ(session.Errors(), "style-editor: nothing was changed: 1 refusal\n") << row.Line << out;
    }
    EXPECT_EQ(Rows(), before);
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
line 3, node 0: refused: SuperviseID "9": there is no such supervised type; there are 0 BLIND, 1 PARTIAL, 2 FULL, 3 DIALCONTINUE, 4 ENHANCED
line 4: refused: node 7 was given in line 1 already
)");
    EXPECT_EQ(session.Status(), 1);
    EXPECT_EQ(Apply("\xEF\xBB\xBF{\"NodeNumber\":\"7\",\"Hookflash\":700}"),
              "line 1, node 7: Hookflash \"600\" -> \"700\"\n");
    EXPECT_EQ(session.Errors(), "style-editor: nothing was changed: a dry run; 1 node would change\n");
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
    const Lines played =
        by_hand.Play("shown 1 2 3\nclick optEnhanced\npaste cmbHookFlash 700\npick cmbThreshold 1\npaste "
                     "txtRetrieve 1,2\nclick cmdOK\n"
                     "shown 1 2 7\nclick optBlind\npaste txtDescription \"Werkstatt \u00fc\"\nclick cmdOK");
    ASSERT_TRUE(Only(played, "refused").empty());
    const auto wanted = Rows(by_hand);
    for (const std::string type : {"4", "\"Enhanced\"", "\"enhanced\""}) {
        const std::string out =
            Apply(R"({"NodeNumber":3,"SuperviseID":)" + type +
                      R"(,"Hookflash":"700","ThresholdTypeID":"VERY LOW","Enhanced":{"Retrieve":"1,2"}})"
                      "\n{\"NodeNumber\":7,\"SuperviseID\":\"0\",\"NodeDescription\":\"Werkstatt \u00fc\"}",
                  {});
        ASSERT_EQ(session.Status(), 0) << session.Errors();
        EXPECT_EQ(session.Errors(), "style-editor: 2 nodes were changed\n");
        EXPECT_EQ(Rows(), wanted);
        if (type != "\"enhanced\"")
            Take_Back(out);
    }
    // Through the editor, the changed node is the current one.
    const Lines seen = session.Play("shown 1 2 3\nshow txtRetrieve lblRecordPosition");
    EXPECT_EQ(Last_Control(seen, "txtRetrieve").at("text"), "1,2");
    EXPECT_EQ(Last_Control(seen, "lblRecordPosition").at("caption"), "1 of 3");
}

TEST_F(Bulk, Names_The_Command_That_Takes_Everything_Back) {
    // What no dialog would write has to come back too.
    stores_test::SQL(
        File(),
        "UPDATE style_node SET hookflash = NULL, transfer = '99999999', supervise_id = '9' WHERE node_number "
        "= 9; "
        "UPDATE node_entry SET label = 'other' WHERE node_number = 3; "
        "UPDATE partial_detail SET retrieve = NULL, supervise_id = NULL WHERE node_number = 3; "
        "INSERT INTO full_detail (config_id, partition_id, node_number, ring_on) VALUES (1, 2, 3, 'stray')");
    const auto before = Rows();
    EXPECT_EQ(Apply(Export(), {}), "");
    EXPECT_EQ(session.Status(), 0);
    EXPECT_EQ(session.Errors(), "style-editor: nothing was changed: there is nothing to change\n");
    const std::string lines = R"({"NodeNumber":3,"SuperviseID":"0","NodeDescription":"changed"}
{"NodeNumber":9,"Hookflash":"500","Transfer":"","SuperviseID":"1","Partial":{"Retrieve":"!","BusyRetry":1,"NumberRetries":1,"RingLimit":1,"BusyOn":50,"BusyOff":50,"RingOn":50,"RingOff":50}})";
    const std::string taken_back_by = Apply(lines, {});
    ASSERT_EQ(session.Status(), 0) << session.Errors();
    const auto changed = Rows();
    EXPECT_NE(changed, before);
    EXPECT_EQ(Apply(lines, {}), "") << "nothing is left to change";

    const std::string planned = Take_Back(taken_back_by, {"--dry-run"});
    EXPECT_NE(planned.find(R"(hookflash: "500" -> null)"), std::string::npos) << planned;
    EXPECT_EQ(Rows(), changed);
    const std::string redone_by = Take_Back(taken_back_by);
    EXPECT_EQ(session.Status(), 0) << session.Errors();
    EXPECT_EQ(Rows(), before);
    EXPECT_EQ(Take_Back(taken_back_by), "");
    EXPECT_EQ(session.Errors(),
              "style-editor: nothing was changed: everything is as it was before already\n");
    Take_Back(redone_by);
    EXPECT_EQ(Rows(), changed);
}

TEST_F(Bulk, Loses_No_Change_Of_Someone_Else) {
    const std::string exported = Export();
    ASSERT_NE(exported.find(R"({"NodeNumber":3,"Change":0,)"), std::string::npos) << exported;
    std::string edited = exported;
    for (auto at = edited.find("\"Hookflash\":\"600\""); at != std::string::npos;
         at = edited.find("\"Hookflash\":\"600\"", at))
        edited.replace(at, 17, "\"Hookflash\":\"650\"");
    session.Play("shown 1 2 7\npaste cmbHookFlash 700\nclick cmdOK");
    const auto before = Rows();
    const std::string refused = Apply(edited, {});
    EXPECT_EQ(session.Status(), 1);
    EXPECT_NE(refused.find("node 7: refused: it was changed by "), std::string::npos) << refused;
    EXPECT_NE(refused.find("(UTC), after the line was exported; export it again"), std::string::npos)
        << refused;
    EXPECT_EQ(Rows(), before);
    const std::string anew = Export();
    EXPECT_EQ(Apply(anew, {}) + session.Errors(),
              "style-editor: nothing was changed: there is nothing to change\n");
    const std::string over = Apply(edited, {"--force"});
    EXPECT_EQ(session.Status(), 0) << session.Errors();

    // A change that someone else has changed since is not taken back either.
    Apply(R"({"NodeNumber":7,"Hookflash":"800"})", {});
    EXPECT_EQ(session.Status(), 0) << "a line without a mark is taken";
    const auto later = Rows();
    const std::string kept = Take_Back(over);
    EXPECT_EQ(session.Status(), 1);
    EXPECT_NE(kept.find("node 7: refused: it was changed by "), std::string::npos) << kept;
    EXPECT_EQ(Rows(), later);
    Take_Back(over, {"--force"});
    EXPECT_EQ(session.Status(), 0) << session.Errors();
    EXPECT_EQ(Rows(), before);
}

// A label checker that prepares the label back to what is stored leaves nothing to change.
TEST_F(Bulk, Completes_A_Node_After_Its_Label_Is_Prepared) {
    session.Play("shown 1 2 3\npaste txtDescription \"it's\"\nclick cmdOK");
    const std::string label =
        stores_test::SQL(File(), "SELECT node_description FROM style_node WHERE config_id = 1 AND "
                                 "partition_id = 2 AND node_number = 3")[0][0];
    ASSERT_NE(label, "Warehouse");
    const std::string history = "SELECT COUNT(*) FROM change_log";
    const auto changes = stores_test::SQL(File(), history);
    for (const std::vector<std::string>& options : {std::vector<std::string>{"--dry-run"}, {}})
        EXPECT_EQ(Apply(R"({"NodeNumber":3,"NodeDescription":"it's"})", options) + session.Errors(),
                  "style-editor: nothing was changed: there is nothing to change\n");
    EXPECT_EQ(stores_test::SQL(File(), history), changes);
}

// What no document can carry, and neither the editor shows, can be exported and repaired.
TEST_F(Bulk, Repairs_What_No_Document_Can_Carry) {
    stores_test::SQL(
        File(), "UPDATE style_node SET transfer = '9' || char(1) || char(65535) WHERE partition_id = 2 AND "
                "node_number = 7");
    const Lines broken = session.Play("shown 1 2 3");
    const std::string said = broken.back().at("ErrDescription");
    EXPECT_TRUE(said.find("ode 7") != std::string::npos && said.find("ransfer") != std::string::npos) << said;
    const std::string exported = Export();
    EXPECT_NE(exported.find(R"("Transfer":"9\\u0001\\uffff")"), std::string::npos) << exported;
    EXPECT_EQ(Apply(exported, {}) + session.Errors(),
              "style-editor: nothing was changed: there is nothing to change\n");
    const std::string out = Apply(R"({"NodeNumber":7,"Transfer":"9"})", {});
    EXPECT_EQ(session.Status(), 0) << session.Errors();
    EXPECT_TRUE(session.Play("shown 1 2 3").back().at("shown"));
    EXPECT_EQ(
        session.Command({"store", "history", "--store", session.Store(), "--partition", "2", "--node", "7"})
            .find("broken"),
        std::string::npos);
}

TEST_F(Bulk, Says_What_It_Cannot_Do) {
    const auto run = [&](std::vector<std::string> words) {
        words.insert(words.begin(), "store");
        words.insert(words.end(), {"--store", session.Store()});
        return session.Command(words);
    };
    const std::string taken = session.File("taken", "mine");
    const struct {
        std::vector<std::string> Words;
        int Status;
        const char* Said;
    } cases[] = {
        {{"apply", "/none/such"}, 3, "/none/such"},
        {{"export", "--out", taken}, 3, "exists already"},
        {{"export", "--partition", "77"}, 1, "partition 77 of configuration 1 has no nodes"},
        {{"history", "--partition", "77"}, 1, "no change is recorded"},
        {{"history", "--node", "32768"}, 2, "0 to 32767"},
        {{"revert"}, 2, "CHANGE"},
        {{"revert", "0"}, 2, "12-15"},
        {{"revert", "5-4"}, 2, "12-15"},
        {{"revert", "one"}, 2, "12-15"},
        {{"revert", "9999"}, 1, "nothing was changed: 1 refusal"},
    };
    for (const auto& given : cases) {
        run(given.Words);
        EXPECT_EQ(session.Status(), given.Status) << given.Words[0] << session.Errors();
        EXPECT_NE(session.Errors().find(given.Said), std::string::npos) << session.Errors();
    }
    EXPECT_EQ(run({"export", "--partition", "77"}), "");
    EXPECT_NE(
        Apply(R"({"NodeNumber":3,"Transfer":")" + std::string(2'000'000, '1') + "\"}").find("longer than"),
        std::string::npos);
    // Someone else is writing.
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open((session.Folder() / "store.db").c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    Apply(R"({"NodeNumber":3,"Hookflash":"999"})", {});
    sqlite3_close(other);
    EXPECT_EQ(session.Status(), 3);
    EXPECT_NE(session.Errors().find("locked"), std::string::npos) << session.Errors();
}

// What another program has written into the history is shown for what it is, and never as something else.
TEST_F(Bulk, Shows_A_Broken_History_As_Broken) {
    Apply(R"({"NodeNumber":3,"Hookflash":"999"})", {});
    const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
    for (const std::string& values :
         {"'" + deep + "'", std::string("'{\"a\":{\"b\":1}}'"), std::string("'{'"), std::string("x'ff00'")})
        stores_test::SQL(File(), "INSERT INTO change_log (change, entry, changed_at, changed_by, editor, "
                                 "operation, record, config_id, partition_id, node_number, old_values, "
                                 "new_values) SELECT change + 1, 1, changed_at, 'eve' || char(27) || '[2J', "
                                 "editor, operation, record, config_id, partition_id, node_number, " +
                                     values +
                                     ", new_values FROM change_log WHERE change = (SELECT MAX(change) FROM "
                                     "change_log) LIMIT 1");
    for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--json"}}) {
        std::vector<std::string> words{"store", "history", "--store", session.Store()};
        words.insert(words.end(), options.begin(), options.end());
        const std::string out = session.Command(words);
        EXPECT_EQ(session.Status(), 0) << session.Errors();
        EXPECT_EQ(out.find('\x1B'), std::string::npos);
        EXPECT_NE(out.find("999"), std::string::npos);
        EXPECT_NE(out.find("roken"), std::string::npos) << out.substr(0, 2000);
        EXPECT_LT(out.size(), 100'000U);
    }
}

// --- spreadsheets

// Whoever keeps no quotes, puts semicolons, a byte-order mark or empty rows: it is what was exported.
TEST_F(Bulk, A_Spreadsheet_That_Nobody_Has_Edited_Changes_Nothing) {
    session.Play("shown 1 2 9\npaste txtDescription \"a, b;c\"\npaste txtTransfer \"\"\nclick cmdOK");
    const auto before = Rows();
    const std::string rows =
        session.Command({"store", "export", "--csv", "--store", session.Store(), "--partition", "2"});
    EXPECT_TRUE(rows.starts_with("NodeNumber,Change,NodeDescription,SuperviseID,")) << rows;
    EXPECT_NE(rows.find(",Partial.RingOff,"), std::string::npos) << rows;
    EXPECT_NE(rows.find(",\"a, b;c\",4,"), std::string::npos) << rows;
    const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
        for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
            text.replace(at, from.size(), to);
        return text;
    };
    for (const std::string& text : {rows, "\xEF\xBB\xBF" + rows, rows + ",,,\r\n\r\n",
                                    replaced(rows, "\r\n", "\n"), replaced(rows, ",\"\",", ",,")}) {
        EXPECT_EQ(Apply(text, {}), "") << text;
        EXPECT_EQ(session.Errors(), "style-editor: nothing was changed: there is nothing to change\n")
            << text;
    }
    EXPECT_EQ(Apply("NodeNumber;Hookflash\n7;700\n"), "line 2, node 7: Hookflash \"600\" -> \"700\"\n");
    EXPECT_EQ(Rows(), before);
}

TEST_F(Bulk, A_Spreadsheet_Changes_What_Its_Cells_Say) {
    const struct {
        const char *Text, *Out;
    } cases[] = {
        // An emptied cell, and one of a value that is not there.
        {"NodeNumber,Transfer,Full.RingOn\n3,,\n", "line 2, node 3: Transfer \"!,3#\" -> \"\"\n"},
        {"NodeDescription,NodeNumber\n\"two\nlines\",7\nx,9\n",
         "line 2, node 7: EntryLabel \"Workshop\" -> \"two\\u000alines\"\n"
         "line 4, node 9: NodeDescription \"Gate\" -> \"x\"\n"},
        {"NodeNumber,SuperviseID,Partial.RingOn\n3,Full,2000\n", "SuperviseCaption \"PARTIAL\" -> \"FULL\""},
        {"NodeNumber,Partial.Retrieve\n3,\n", "\"Partial\": null; a node of this type has the record"},
        {"NodeNumber,Change\n3,8\n", "line 2, node 3: refused: it was never changed in this store"},
        {"NodeNumber,Hookflash\n3,2001\n", "line 2, node 3: refused: Hookflash \"2001\": a number from 50"},
        {"NodeNumber,Hookflash\nx,500\n3,500,7\n",
         "line 2: refused: \"NodeNumber\" is missing or no number from 0 to 32767\n"
         "line 3: refused: cell 3 stands in a column without a name\n"},
        {"NodeNumber,Colour\n3,1\n4,1\n", "line 1: refused: \"Colour\" is no value of a node; see "
                                          "style-editor store export --csv for the names\n"},
        {"NodeNumber,NodeNumber\n3,3\n", "line 1: refused: \"NodeNumber\" names two columns\n"},
        {"Hookflash,NodeNumber\n3,\"a\"b\n",
         "line 2: refused: a quote in a cell is written twice, and the cell stands in quotes\n"},
        {"Hookflash,NodeNumber\n3,\"7\n8\n", "line 2: refused: a quote in a cell is written twice"},
    };
    const auto before = Rows();
    for (const auto& row : cases) {
        const std::string out = Apply(row.Text);
        EXPECT_NE(out.find(row.Out), std::string::npos) << row.Text << out << session.Errors();
        EXPECT_EQ(session.Status(), out.find("refused") == std::string::npos ? 0 : 1) << row.Text;
    }
    std::ofstream(session.Folder() / "noted.csv") << "Hookflash\n3\n"; // by its name alone
    EXPECT_EQ(session.Command(
                  {"store", "apply", (session.Folder() / "noted.csv").string(), "--store", session.Store()}),
              "line 1: refused: the first line names the columns, and one of them is NodeNumber\n");
    EXPECT_EQ(Rows(), before);
}

// --- find and show

TEST_F(Bulk, Finds_Nodes_And_Shows_One) {
    const auto command = [&](std::vector<std::string> words) {
        words.insert(words.begin(), "store");
        words.insert(words.end(), {"--store", session.Store(), "--partition", "2"});
        return session.Command(words);
    };
    const std::string head = "Node  Label      Type         Transfer  Disconnect  Retrieve\n";
    for (const char* text : {"WAREHOUSE", ",3#"})
        EXPECT_EQ(command({"find", text}), head + "3     Warehouse  Partial (1)  !,3#      !           !\n")
            << text;
    const std::string node = command({"show", "--node", "3"});
    for (const char* line : {"Field              Value                 Unit  Name\n",
                             "Hook flash         500                   ms    Hookflash\n",
                             "Threshold          Standard (7)                ThresholdTypeID\n",
                             "Busy retry         4                     s     Partial.BusyRetry\n"})
        EXPECT_NE(node.find(line), std::string::npos) << line << node;
    const struct {
        std::vector<std::string> Words;
        int Status;
        const char* Message;
    } cases[] = {
        {{"find", "\033x"}, 1, "no node of partition 2 of configuration 1 holds \"\\u001bx\""},
        {{"show", "--node", "4"}, 1, "node 4 does not exist in partition 2 of configuration 1"},
        {{"show", "--node", "4", "--config", "9"}, 1, "partition 2 of configuration 9 has no nodes"},
        {{"find", "x", "--config", "9"}, 1, "partition 2 of configuration 9 has no nodes"},
        {{"show", "--node", "-1"}, 2, "write a number from 0 to 32767"},
        {{"show"}, 2, "--node is required"},
        {{"find"}, 2, "TEXT is required"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(command(row.Words), "");
        EXPECT_EQ(session.Status(), row.Status) << row.Message;
        EXPECT_NE(session.Errors().find(row.Message), std::string::npos) << session.Errors();
    }
}

} // namespace
