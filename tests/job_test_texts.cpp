// Languages and texts: what a job makes of the string table.
#include "editor_files.h"

namespace {

constexpr const char* Stuck =
    R"({"caption":"Node Editor","event":"form","focus":"txtDescription","height":8040,"left":0,"loaded":true,"mouse_pointer":11,"screen_pointer":11,"top":0,"visible":false,"width":4770})";
constexpr const char* Language_Parts = "[KOR_STYLE_Node][dlgGUI]Load_Language_Dependant_Parts";

std::string Missing_Text(int id) {
    return "Resource with identifier '" + std::to_string(id) + "' not found";
}

Line Internal_Error(const std::string& location, int code, const std::string& description) {
    return {{"event", "box"},
            {"by", "product"},
            {"language", 1},
            {"text", "Location:     " + location + "\r\nCode:          " + std::to_string(code) +
                         "\r\nDescription: " + description},
            {"kind", 3},
            {"buttons", 1},
            {"title", "Internal Error"},
            {"answer", 1}};
}

TEST(Job_Texts, A_Language_Out_Of_Range_Ends_The_Job_At_Once) {
    Editor_Session session;
    const Record overflow{false, "[KOR_STYLE_Node][Busyness_Rules]Shown", 6, "Overflow"};
    const Record no_column{false, "[ADODB.Recordset][Busyness_Rules]Obtain_All_Node_Type_Name", 3265,
                           "Item cannot be found in the collection corresponding to the requested name or "
                           "ordinal."};
    const struct {
        std::string Language;
        Record Wanted;
        std::size_t Calls;
    } cases[] = {{"557", overflow, 0},    {"32767", overflow, 0}, {"-555", overflow, 0},
                 {"-32768", overflow, 0}, {"556", no_column, 1},  {"-554", no_column, 1},
                 {"3", no_column, 1},     {"-1", no_column, 1}};
    for (const auto& row : cases) {
        const Lines lines = session.Play("shown 1 1 1 " + row.Language + "\nshow form", {"--trace"});
        EXPECT_EQ(Last_Record(lines), row.Wanted) << row.Language;
        EXPECT_EQ(Calls(lines), Options(row.Calls, "Get_All_Node_Types()")) << row.Language;
        EXPECT_EQ(Last_Of(lines, "form"), Line::parse(Stuck)) << row.Language;
    }
}

TEST(Job_Texts, A_Missing_Language_Is_One_Internal_Error) {
    Editor_Session session;
    const struct {
        std::string Arguments;
        int Text;
        bool Box;
    } cases[] = {{"2", 59, true}, {"2 silent", 59, false}, {"0", -59, true}, {"0 silent", -59, false}};
    for (const auto& row : cases) {
        const Lines lines = session.Play("shown 1 1 1 " + row.Arguments + "\nshow form", {"--trace"});
        EXPECT_EQ(Last_Record(lines), (Record{false, "KOR_STYLE_Node", 326, Missing_Text(row.Text)}));
        EXPECT_EQ(Only(lines, "box"),
                  row.Box ? Lines{Internal_Error("KOR_STYLE_Node", 326, Missing_Text(row.Text))} : Lines{});
        EXPECT_EQ(Operations(lines)[0], "Get_All_Node_Types");
        EXPECT_EQ(Operations(lines)[1], "Get_Configuration_Info")
            << "for the user log, whether silent or not";
        Line hidden = Line::parse(Stuck);
        hidden["mouse_pointer"] = hidden["screen_pointer"] = 0;
        EXPECT_EQ(Last_Of(lines, "form"), hidden) << "loaded, hidden, with the normal pointer";
    }
    const Lines unshown = session.Play("answer fail\nshown 1 1 1 2");
    EXPECT_EQ(Last_Of(unshown, "box").at("answer"), -1);
    EXPECT_EQ(Last_Record(unshown), (Record{false, "KOR_STYLE_Node", 326, Missing_Text(59)}))
        << "nobody minds";
}

TEST(Job_Texts, Are_Applied_With_Their_Own_Rounding) {
    Editor_Session session;
    const struct {
        int Id;
        const char *Text, *Control, *Key;
        int Value;
    } cases[] = {
        {11, "1800.9", "cmbHookFlash", "left", 1800},
        {13, "1799.5", "cmbThreshold", "left", 1799},
        {15, "-0.5", "txtTransfer", "left", -1},
        {17, "1e3", "txtDisconnect", "left", 1000},
        {19, " 1,800 ", "txtRetrieve", "left", 1800},
        {35, "99999", "cmbRingOff", "left", 99999},
        {3, "1800.9", "txtDescription", "left", 1801},
        {3, "1200.5", "txtDescription", "left", 1200},
        {37, "1800.5", "cmdOK", "left", 1800},
        {37, "1801.5", "cmdOK", "left", 1802},
        {44, "1000.5", "cmdApply", "width", 1000},
        {48, "701.5", "cmdFirst", "left", 702},
        {48, "701.5", "cmdPrevious", "left", 1077},
        {49, "1001.5", "cmbNode", "width", 1002},
        {49, "1001.5", "lblRecordPosition", "left", 2432},
        {50, "900", "cmdLast", "left", 3705},
    };
    for (const auto& row : cases) {
        const Lines lines = session.Play(std::string("shown 1 2 3\nshow ") + row.Control,
                                         Strings(session, {{row.Id, row.Text}}));
        EXPECT_EQ(Last_Control(lines, row.Control).at(row.Key), row.Value) << row.Id << " " << row.Text;
        EXPECT_EQ(Last_Record(lines), Success) << row.Id << " " << row.Text;
    }
    const Lines twice = session.Play("shown 1 2 3\nshow form", Strings(session, {{0, "Edit ~ as ~"}}));
    EXPECT_EQ(Last_Of(twice, "form").at("caption"), "Edit STYLE as ~");
    const Lines wide = session.Play("shown 1 2 3\nshow form", Strings(session, {{1, "4771"}}));
    EXPECT_EQ(Last_Of(wide, "form").at("left"), 5294) << "the half twip is dropped";
    const Lines huge = session.Play("shown 1 2 3\nshow form", Strings(session, {{1, "15363"}}));
    EXPECT_EQ(Last_Of(huge, "form").at("left"), -1) << "towards zero";
}

TEST(Job_Texts, A_Text_That_Cannot_Be_Used_Stops_Before_Its_Item) {
    Editor_Session session;
    const Record mismatch{false, Language_Parts, 13, "Type mismatch"};
    const Record overflow{false, Language_Parts, 6, "Overflow"};
    const struct {
        int Id;
        const char* Text;
        Record Wanted;
        const char *Control, *Caption;
    } cases[] = {
        {0,
         "Node Editor",
         {false, Language_Parts, 5, "Invalid procedure call or argument"},
         "lblDescription",
         "&Description:"},
        {1, "abc", mismatch, "lblDescription", "&Description:"},
        {1, "32768", overflow, "lblDescription", "&Description:"},
        {3, "wide", mismatch, "fraSupervised", "&Supervised"},
        {11, "1e", mismatch, "lblHookFlash", "Hook Flash (msec):"},
        {13, "1 800", mismatch, "lblTransfer", "Transfer:"},
        {37, "40000", overflow, "cmdOK", "OK"},
        {38, "x", mismatch, "cmdCancel", "&Cancel"},
        {50, "-32769", overflow, "cmdHelp", "Help"},
    };
    for (const auto& row : cases) {
        const Lines lines = session.Play("shown 1 2 3\nshow", Strings(session, {{row.Id, row.Text}}));
        EXPECT_EQ(Last_Record(lines), row.Wanted) << row.Id << " " << row.Text;
        EXPECT_EQ(Last_Control(lines, row.Control).at("caption"), row.Caption) << row.Id << " " << row.Text;
        EXPECT_EQ(Last_Control(lines, "cmbRingLimit").at("count"), 0) << "no list is filled";
        EXPECT_EQ(Last_Of(lines, "form").at("visible"), false);
        EXPECT_EQ(Only(lines, "box"), Lines{}) << row.Id;
    }
    const Lines lines = session.Play("shown 1 2 3\nshow cmdCancel", Strings(session, {{41, ""}}));
    EXPECT_EQ(Last_Control(lines, "cmdCancel").at("caption"), "Cancel");
    EXPECT_EQ(Last_Control(lines, "cmdCancel").at("left"), 1800)
        << "moved in one call with its width, or not";
}

TEST(Job_Texts, A_Message_Without_Its_Texts_Is_Not_Shown) {
    Editor_Session session;
    const auto missing = [](int id) { return Record{false, "KOR_STYLE_Node", 326, Missing_Text(id)}; };
    const struct {
        int Id;
        std::optional<std::string> Text;
        Record Wanted;
    } cases[] = {
        {54, std::nullopt, missing(54)},
        {57, std::nullopt, missing(57)},
        {54, "", Success},
        {57, "", Success},
        {57,
         "not found",
         {false, "[KOR_STYLE_Node][dlgGUI]Selected_Node_Not_Found", 5, "Invalid procedure call or argument"}},
    };
    for (const auto& row : cases) {
        const Lines lines = session.Play("shown 1 2 77\nshow form", Strings(session, {{row.Id, row.Text}}));
        EXPECT_EQ(Last_Record(lines), row.Wanted) << row.Id;
        EXPECT_EQ(Only(lines, "box"),
                  row.Text ? Lines{} : Lines{Internal_Error("KOR_STYLE_Node", 326, Missing_Text(row.Id))});
        EXPECT_EQ(Last_Of(lines, "form").at("loaded"), false) << row.Id;
    }
}

// Without its texts the save question is a refusal to leave the node, until Apply is off again.
TEST(Job_Texts, Without_The_Save_Question_Changes_Hold_The_Dialog) {
    Editor_Session session;
    for (const int id : {53, 55})
        for (const bool is_missing : {false, true}) {
            const std::string label = (is_missing ? "missing " : "empty ") + std::to_string(id);
            const Changed_Texts texts{{id, is_missing ? std::nullopt : std::optional<std::string>("")}};
            const Lines lines = session.Play("shown 1 2 3\npaste txtDescription \"" + label +
                                                 "\"\nclick cmdCancel\nclose\n"
                                                 "show\nclick cmdApply\nshow form\nclose",
                                             Strings(session, texts));
            const Lines forms = Only(lines, "form");
            EXPECT_EQ(session.Status(), 0) << session.Errors();
            EXPECT_EQ(forms[0].at("visible"), true) << id;
            EXPECT_EQ(Last_Control(lines, "txtDescription").at("text"), label) << id;
            EXPECT_EQ(forms[1].at("loaded"), !is_missing) << "a recorded error closes it after the save";
            EXPECT_EQ(Only(lines, "box").size(), is_missing ? 2U : 0U) << id;
            EXPECT_EQ(Last_Record(lines).Shown, !is_missing) << id;
        }
}

} // namespace
