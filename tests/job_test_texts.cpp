// Languages and texts: what a job makes of the string table.
#include "editor_files.h"

namespace {

constexpr const char* Stuck =
    R"({"caption":"Node Editor","event":"form","focus":"txtDescription","height":8040,"left":0,"loaded":true,"mouse_pointer":11,"screen_pointer":11,"top":0,"visible":false,"width":4770})";

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
