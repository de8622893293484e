// Saving through the whole editor: what is called with which texts, and what the store holds after a save
// that was broken off.
#include "editor_files.h"
#include "stores_test_tools.h"

namespace {

class Save : public ::testing::Test {
protected:
    Lines Traced(const std::string& script, const Options& options = {}) {
        return session.Play(script, options + Options{"--trace"});
    }
    stores_test::Rows SQL(const std::string& sql) const {
        return stores_test::SQL(session.Folder() / "store.db", sql);
    }
    // The calls of the save: those after the nodes were read and shown.
    static Options Saving_Calls(const Lines& lines) {
        const Options calls = Calls(lines);
        return {std::find_if(calls.begin(), calls.end(),
                             [](const std::string& call) { return call.starts_with("Is_Label_Allowed"); }),
                calls.end()};
    }

    // The time in an update of the node list as "<now>"; it may hold commas, the label must not.
    static std::string Timeless(std::string call) {
        if (!call.starts_with("Update_Node_Entry("))
            return call;
        const std::size_t start = call.find(',') + 1;
        std::size_t end = call.size();
        for (int arguments = 0; arguments < 4; ++arguments)
            end = call.rfind(',', end - 1);
        const bool is_time = std::count(call.begin() + static_cast<long>(start),
                                        call.begin() + static_cast<long>(end), ':') == 2;
        return call.replace(start, end - start, is_time ? "<now>" : "<no time>");
    }

    Editor_Session session;
};

constexpr const char* Names[] = {"Blind", "Partial", "Full", "DialContinue", "Enhanced"};
constexpr const char* Captions[] = {"BLIND", "PARTIAL", "FULL", "DIALCONTINUE", "ENHANCED"};

TEST_F(Save, Every_Change_Of_Type_Removes_The_Old_Record_And_Replaces_The_New_One) {
    const std::string values = "paste cmbBusyOn 6e2\npaste cmbBusyOff 700\npaste cmbRingLimit 9\n"
                               "paste txtRetrieve \"!,#\"\npaste cmbBusyRetry 8\npaste cmbNumRetries 3\n"
                               "paste cmbRingOn 2000\npaste cmbRingOff 4000\n";
    const std::string types = "01234";
    for (const char from : types)
        for (const char to : types) {
            const char former[] = {from, '\0'};
            const std::string from_name = Names[from - '0'];
            const std::string to_name = Names[to - '0'];
            SCOPED_TRACE(from_name + " to " + to_name);
            const Options node = Reply(session, "Get_Style_Nodes",
                                       Style_Nodes({{"4", " a label ", former, "60.5", "8", "", "!"}}));
            Options expected{"Is_Label_Allowed( a label )", "Prepare_Label( a label )",
                             "Update_Style_Node(1,1,4,60.5,8,,*," + std::string(Captions[to - '0']) + "," +
                                 to + ", a label )"};
            if (from != to && from != '0')
                expected.push_back("Delete_" + from_name + "_Detail(1,1,4)");
            if (to != '0') {
                expected.push_back("Delete_" + to_name + "_Detail(1,1,4)");
                expected.push_back("Insert_" + to_name + "_Detail(1,1,4," + to +
                                   ",!,#,8,3,9,6e2,700,2000,4000)");
            }
            const Lines lines = Traced("shown 1 1 4\nclick opt" + to_name + "\n" + (to == '0' ? "" : values) +
                                           "paste txtDisconnect *\nclick cmdApply\nshow cmdApply\nshow form",
                                       node);
            Options calls = Saving_Calls(lines);
            for (std::string& call : calls)
                call = Timeless(call);
            EXPECT_EQ(calls, (expected +
                              Options{"Update_Node_Entry( a label ,<now>,1,1,5,4)", "Get_Style_Nodes(1,1)"}));
            EXPECT_EQ(Last_Control(lines, "cmdApply").at("enabled"), false);
            EXPECT_EQ(Last_Of(lines, "form").at("loaded"), true);
            EXPECT_EQ(Last_Record(lines), Success);
        }
}

TEST_F(Save, Moves_Start_From_The_Saved_Record_After_The_List_Was_Read_Again) {
    const Lines lines = Traced("shown 1 2 7\npaste txtDescription new\nanswer save\nclick cmdNext\nshow\n"
                               "click cmdPrevious\nshow");
    EXPECT_EQ(Last_Control(lines, "txtDescription").at("text"), "new");
    EXPECT_EQ(Only(lines, "form").size(), 2U);
    const Options calls = Calls(lines);
    EXPECT_EQ(calls[calls.size() - 2], "Get_Enhanced_Detail(1,2,9)");
    EXPECT_EQ(calls.back(), "Get_Full_Detail(1,2,7)");
}

// A save of node 3 that turns Partial into Enhanced: nine operations, five writes in a fixed order.
TEST_F(Save, A_Broken_Save_Leaves_A_Prefix_Of_The_Writes) {
    const struct {
        const char *Operation, *Component;
        int Writes; // made before it
    } cases[] = {
        {"Is_Label_Allowed", "LabelChecker", 0},          {"Prepare_Label", "LabelChecker", 0},
        {"Update_Style_Node", "ZEBud.UDNODES", 0},        {"Delete_Partial_Detail", "ZEBdel.DELNODES", 1},
        {"Delete_Enhanced_Detail", "ZEBdel.DELNODES", 2}, {"Insert_Enhanced_Detail", "ZEBins.INSNODES", 3},
        {"Update_Node_Entry", "ZEBud.UDNODES", 4},        {"Get_Style_Nodes@2", "ZEBdb.NODES", 5}};
    const auto pristine = session.Folder() / "pristine.db";
    SQL("INSERT INTO enhanced_detail (config_id, partition_id, node_number, retrieve) VALUES (1, 2, 3, "
        "'old')");
    std::filesystem::copy_file(session.Folder() / "store.db", pristine);
    for (const bool described : {true, false})
        for (const auto& row : cases) {
            SCOPED_TRACE(row.Operation);
            std::filesystem::copy_file(pristine, session.Folder() / "store.db",
                                       std::filesystem::copy_options::overwrite_existing);
            const Lines lines = Traced(
                "shown 1 2 3\nclick optEnhanced\npaste txtDescription new\nclick cmdOK\nshow",
                {"--fail", std::string(row.Operation) + "=-2147418113:" + (described ? "no room" : "")});
            const std::string where = std::string("[") + row.Component + "][Busyness_Rules]Save_Changes";
            EXPECT_EQ(Last_Record(lines),
                      (Record{!described, where, -2147418113, described ? "no room" : ""}));
            EXPECT_EQ(Last_Of(lines, "form").at("loaded"), false) << "the save answered True: OK closes";
            EXPECT_TRUE(Only(lines, "box").empty());

            const auto one = [&](const std::string& what, const std::string& table) {
                const auto rows = SQL("SELECT " + what + " FROM " + table +
                                      " WHERE config_id = 1 AND partition_id = 2 AND node_number = 3");
                return rows.empty() ? std::string("none") : rows[0][0];
            };
            EXPECT_EQ(one("node_description || supervise_id", "style_node"),
                      row.Writes >= 1 ? "new4" : "Warehouse1");
            EXPECT_EQ(one("retrieve", "partial_detail"), row.Writes >= 2 ? "none" : "!");
            EXPECT_EQ(one("retrieve", "enhanced_detail"), row.Writes >= 4   ? "!"
                                                          : row.Writes == 3 ? "none"
                                                                            : "old");
            EXPECT_EQ(one("label", "node_entry"), row.Writes >= 5 ? "new" : "Warehouse");
        }
}

TEST_F(Save, A_Failing_Save_From_The_Question_Closes_The_Dialog) {
    for (const char* way :
         {"click cmdNext", "pick cmbNode 2", "close", "click cmdCancel", "click cmdApply"}) {
        const Lines lines = session.Play(std::string("shown 1 2 7\npaste txtDescription new\nanswer save\n") +
                                             way + "\nshow form",
                                         {"--fail", "Update_Style_Node"});
        EXPECT_EQ(Last_Of(lines, "form").at("loaded"), false) << way;
        EXPECT_EQ(Last_Record(lines), (Record{false, "[ZEBud.UDNODES][Busyness_Rules]Save_Changes",
                                              Unspecified, "Injected failure of Update_Style_Node"}));
    }
}

TEST_F(Save, What_The_Second_Reading_Lacks_Is_Reported) {
    const std::string here = "[KOR_STYLE_Node][Busyness_Rules]Save_Changes";
    const struct {
        const char* Name;
        std::string Answer;
        Record Wanted;
        bool Second_Save;
    } cases[] = {
        {"unreadable", "<xml", {false, here, 91, Not_Set}, false},
        {"empty", "", {false, here, 91, Not_Set}, false},
        {"nodes without the saved one",
         Style_Nodes({{"3", "", "0"}, {"9", "", "0"}}),
         {false, "[ADODB.Recordset][Busyness_Rules]Save_Changes", 3021,
          "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
          "current record."},
         false},
        {"a number that is none", Style_Nodes({{"3x", "", "0"}}), {false, here, 13, "Type mismatch"}, false},
        {"no former type", Style_Nodes({{"7", "", nullptr}}), {false, here, 94, "Invalid use of Null"}, true},
        {"a former type that is none",
         Style_Nodes({{"7", "", "full"}}),
         {false, here, 13, "Type mismatch"},
         true},
    };
    for (const auto& row : cases) {
        const Lines lines = Traced("shown 1 2 7\npaste txtDescription \"" + std::string(row.Name) +
                                       "\"\nclick cmdApply\nshow form\n" +
                                       "paste txtDescription again\nclick cmdApply\nshow form",
                                   Reply(session, "Get_Style_Nodes@2", row.Answer));
        EXPECT_EQ(Last_Record(lines), row.Wanted) << row.Name;
        EXPECT_EQ(Only(lines, "form")[0].at("loaded"), row.Second_Save) << row.Name;
        EXPECT_EQ(Last_Of(lines, "form").at("loaded"), false) << row.Name;
        EXPECT_EQ(SQL("SELECT label FROM node_entry WHERE partition_id = 2 AND node_number = 7")[0][0],
                  row.Name)
            << "the first save was written, the second not";
    }
}

TEST_F(Save, Nothing_Is_Written_Without_A_Threshold) {
    const Lines lines = Traced("shown 1 1 4\npaste txtDescription x\nclick cmdApply",
                               Reply(session, "Get_Style_Nodes", Style_Nodes({{"4", "", "0", "", "99"}})));
    EXPECT_EQ(Last_Record(lines), (Record{false, "[KOR_STYLE_Node][Busyness_Rules]Save_Changes", 381,
                                          "Invalid property array index"}));
    EXPECT_EQ(Saving_Calls(lines), (Options{"Is_Label_Allowed(x)", "Prepare_Label(x)"}));
}

} // namespace
