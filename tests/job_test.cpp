// Opening the editor on a node: what is called, what is shown, and what is left when loading ends early.
#include "editor_files.h"

namespace {

class Job : public ::testing::Test {
protected:
    // Plays with every call printed.
    Lines Traced(std::string_view script, const Options& options = {}) {
        return session.Play(script, options + Options{"--trace"});
    }
    Options Nodes(const Rows& rows) const { return Reply(session, "Get_Style_Nodes", Style_Nodes(rows)); }

    Editor_Session session;
};

const Options Loading_Calls{"Get_All_Node_Types()", "Get_All_Threshold_Types()"};

// A record of each type, all values different.
const Rows Every_Type{{"1", "blind", "0", "150", "1", "1", "11"},
                      {"2", "partial", "1", "250", "2", "2", "22"},
                      {"3", "full", "2", "350", "3", "3", "33"},
                      {"4", "dial", "3", "450", "4", "4", "44"},
                      {"5", "enhanced", "4", "550", "5", "5", "55"}};

TEST_F(Job, Reads_And_Shows_A_Node_Of_Each_Type) {
    const Rows details{{"!1", "6", "7", "8", "600", "700", "800", "900"}, {"9", "9", "9", "9", "9"}};
    const struct {
        const char *Number, *Option, *Call, *On, *Off;
    } cases[] = {
        {"1", "optBlind", nullptr, "Busy On (msec):", "Busy Off (msec):"},
        {"2", "optPartial", "Get_Partial_Detail", "Busy On (msec):", "Busy Off (msec):"},
        {"3", "optFull", "Get_Full_Detail", "Busy On (msec):", "Busy Off (msec):"},
        {"4", "optDialContinue", "Get_DialContinue_Detail", "Busy On (msec):", "Busy Off (msec):"},
        {"5", "optEnhanced", "Get_Enhanced_Detail", "Busy1 On (msec):", "Busy2 On (msec):"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Option);
        const bool enhanced = std::string_view(row.Number) == "5";
        Options replies = Nodes(Every_Type);
        Options calls = Loading_Calls + Options{"Get_Style_Nodes(3,-2)"};
        if (row.Call) {
            replies = replies + Reply(session, row.Call,
                                      enhanced ? Detail(details, "Busy1On", "Busy2On") : Detail(details));
            calls.push_back(std::string(row.Call) + "(3,-2," + row.Number + ")");
        }
        const Lines lines = Traced("shown 3 -2 " + std::string(row.Number) +
                                       "\nshow\nitems cmbNode\nitems lstSupervisedTypeID",
                                   replies);
        EXPECT_EQ(Calls(lines), calls);
        EXPECT_EQ(Last_Record(lines), Success);
        const std::size_t index = static_cast<std::size_t>(row.Number[0] - '1');
        Texts texts{{"txtDescription", Every_Type[index][1]},
                    {"cmbHookFlash", Every_Type[index][3]},
                    {"txtTransfer", Every_Type[index][5]},
                    {"txtDisconnect", Every_Type[index][6]},
                    {"lblBusyOn", row.On},
                    {"lblBusyOff", row.Off},
                    {"cmbNode", std::string("STYLE ") + row.Number},
                    {"lblRecordPosition", std::string(row.Number) + " of 5"}};
        Texts detail{{"txtRetrieve", "!1"}, {"cmbBusyRetry", "6"}, {"cmbNumRetries", "7"},
                     {"cmbRingLimit", "8"}, {"cmbBusyOn", "600"},  {"cmbBusyOff", "700"},
                     {"cmbRingOn", "800"},  {"cmbRingOff", "900"}};
        for (auto& [name, text] : detail)
            texts[name] = row.Call ? text : "";
        EXPECT_EQ(Shown_Texts(lines, texts), texts);
        for (const auto& other : cases)
            EXPECT_EQ(Last_Control(lines, other.Option).at("value"), other.Option == row.Option);
        for (const char* name : {"cmbThreshold", "lblThreshold", "txtRetrieve", "lblRingOff", "cmbRingOff"})
            EXPECT_EQ(Last_Control(lines, name).at("enabled"), row.Call != nullptr) << name;
        for (const char* name : {"fra", "cmbHookFlash", "txtTransfer", "txtDisconnect"})
            EXPECT_EQ(Last_Control(lines, name).at("enabled"), true) << name;
        EXPECT_EQ(Last_Control(lines, "cmdApply").at("enabled"), false);
        EXPECT_EQ(Last_Control(lines, "cmdFirst").at("enabled"), index > 0);
        EXPECT_EQ(Last_Control(lines, "cmdPrevious").at("enabled"), index > 0);
        EXPECT_EQ(Last_Control(lines, "cmdNext").at("enabled"), index < 4);
        EXPECT_EQ(Last_Control(lines, "cmdLast").at("enabled"), index < 4);
        EXPECT_EQ(Last_Of(lines, "result").at("SupervisedType_Blind"), row.Call == nullptr);
        EXPECT_EQ(Last_Of(lines, "items").at("items"), Line({"0", "1", "2", "3", "4"}));
    }
}

const Rows Default_3_7_9{{"0", "default", "1"}, {"3", "three", "1"}, {"7", "seven", "2"}, {"9", "nine", "0"}};

TEST_F(Job, The_First_Node_Not_Below_The_Requested_Number_Is_Shown) {
    const struct {
        const char *Requested, *Entry, *Position, *Detail;
    } cases[] = {
        {"-32768", "STYLE 3", "1 of 3", "Get_Partial_Detail(1,1,-32768)"},
        {"-1", "STYLE 3", "1 of 3", "Get_Partial_Detail(1,1,-1)"},
        {"1", "STYLE 3", "1 of 3", "Get_Partial_Detail(1,1,1)"},
        {"3", "STYLE 3", "1 of 3", "Get_Partial_Detail(1,1,3)"},
        {"5", "STYLE 7", "2 of 3", "Get_Full_Detail(1,1,5)"},
        {"7", "STYLE 7", "2 of 3", "Get_Full_Detail(1,1,7)"},
        {"8", "STYLE 9", "3 of 3", nullptr},
        {"9", "STYLE 9", "3 of 3", nullptr},
    };
    for (const auto& row : cases) {
        const Lines lines =
            Traced("shown 1 1 " + std::string(row.Requested) + "\nshow\nitems cmbNode", Nodes(Default_3_7_9));
        Options calls = Loading_Calls + Options{"Get_Style_Nodes(1,1)"};
        if (row.Detail)
            calls.push_back(row.Detail);
        EXPECT_EQ(Calls(lines), calls) << row.Requested;
        const Texts texts{{"cmbNode", row.Entry}, {"lblRecordPosition", row.Position}};
        EXPECT_EQ(Shown_Texts(lines, texts), texts) << row.Requested;
        EXPECT_EQ(Last_Of(lines, "items").at("items"), Line({"STYLE 3", "STYLE 7", "STYLE 9"}));
        EXPECT_EQ(Last_Record(lines), Success) << row.Requested;
        EXPECT_EQ(Last_Of(lines, "result").at("Editing_Default_Node"), false);
    }
}

TEST_F(Job, The_Requested_Number_Holds_Until_The_First_Step) {
    const Lines lines =
        Traced("shown 1 1 5\nclick cmdPrevious\nclick cmdNext\npick cmbNode 1", Nodes(Default_3_7_9));
    EXPECT_EQ(Calls(lines), (Loading_Calls + Options{"Get_Style_Nodes(1,1)", "Get_Full_Detail(1,1,5)",
                                                     "Get_Partial_Detail(1,1,3)", "Get_Full_Detail(1,1,7)",
                                                     "Get_Full_Detail(1,1,7)"}));
}

TEST_F(Job, The_Default_Node_Is_Edited_Alone) {
    const Lines normal = session.Play("shown 1 1 3\nshow", Nodes(Default_3_7_9));
    const Lines lines =
        Traced("shown 1 1 0\nshow\nitems cmbNode\nitems lstSupervisedTypeID", Nodes(Default_3_7_9));
    EXPECT_EQ(Calls(lines), (Loading_Calls + Options{"Get_Style_Nodes(1,1)", "Get_Partial_Detail(1,1,0)"}));
    EXPECT_EQ(Only(lines, "items")[0].at("items"), Line({"STYLE 0"}));
    EXPECT_EQ(Only(lines, "items")[1].at("items"), Line({"1"}));
    EXPECT_EQ(Last_Of(lines, "form").at("height"), 8040 - 615);
    EXPECT_EQ(Last_Of(lines, "form").at("top"), 1740);
    const std::string hidden = "cmdFirst cmdPrevious cmbNode lblRecordPosition cmdNext cmdLast ";
    const std::string moved =
        "lblDescription txtDescription fraSupervised lblHookFlash cmbHookFlash lblTransfer "
        "txtTransfer lblDisconnect txtDisconnect fra cmdOK cmdCancel cmdApply ";
    for (const Line& before : Only(normal, "control")) {
        const std::string name = before.at("name");
        const Line control = Last_Control(lines, name);
        const bool is_hidden = hidden.find(name + " ") != std::string::npos;
        const bool is_moved = moved.find(name + " ") != std::string::npos;
        EXPECT_EQ(control.at("visible"), before.at("visible") && !is_hidden) << name;
        EXPECT_EQ(control.at("top"), before.at("top").get<int>() - (is_moved ? 615 : 0)) << name;
    }
    EXPECT_EQ(Last_Control(lines, "lblDescription").at("top"), 120);
    EXPECT_EQ(Last_Of(lines, "result").at("Editing_Default_Node"), true);
    EXPECT_EQ(Last_Record(lines), Success);
}

} // namespace
