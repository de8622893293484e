// Nodes whose stored values break the fields' rules, or are missing: how they are shown.
#include <gtest/gtest.h>

#include "editor_files.h"
#include "field_rows.h"

namespace {

using Row = std::vector<const char*>; // null pointers are nulls
using Changes = std::map<std::size_t, const char*>;
enum Column : std::size_t { Number, Label, Type, Hook_Flash, Threshold, Transfer, Disconnect };

Row Changed(Row row, const Changes& changes) {
    for (const auto& [column, value] : changes)
        row[column] = value;
    return row;
}

Row Node(const char* number, const Changes& changes = {}) {
    return Changed({number, "Desk", "1", "700", "4", "!,8", "*"}, changes);
}

const Row Sound_Detail{"!#", "7", "8", "9", "300", "350", "900", "950"};

class Stored_Values : public testing::Test {
protected:
    Editor_Session session;

    // Node 1 is sound, node 2 has the changed values.
    Lines Play(const Changes& second, const std::string& script, const Row& detail = Sound_Detail) {
        return session.Play(
            script, Options{"--trace"} +
                        Reply(session, "Get_Style_Nodes", Style_Nodes({Node("1"), Node("2", second)})) +
                        Reply(session, "Get_Partial_Detail@1", Detail({Sound_Detail})) +
                        Reply(session, "Get_Partial_Detail", Detail({detail})) +
                        Reply(session, "Get_Enhanced_Detail", Detail({detail}, "Busy1On", "Busy2On")));
    }
    // Node 1 is shown, then node 2.
    Lines Shown(const Changes& second, const Row& detail = Sound_Detail) {
        return Play(second, "shown 1 1 1\nclick cmdNext\nshow\nclose", detail);
    }
};

std::string Text_Of(const Lines& lines, const std::string& control) {
    return Last_Control(lines, control).at("text");
}

const char* Stored(const std::string& text) {
    return text == "-" ? nullptr : text.c_str();
}

} // namespace

TEST_F(Stored_Values, Pass_Through_The_Rules_Of_The_Field_And_Leave_The_Node_Unmarked) {
    struct Field {
        Column Where;
        std::string Control, Stored_And_Shown; // "-" is a null
    };
    for (const Field& field :
         {Field{Hook_Flash, "cmbHookFlash",
                "3000=2000 12345=700 30=30 = -= (null)=700 abc=700 15.=50 800+=50"},
          Field{Transfer, "txtTransfer", "12345678=!,8 12A=!,8 1A2=1A2 -= (null)=!,8 12.=!,8"},
          Field{Disconnect, "txtDisconnect", "-= = (null)=* 9,,123#=9,,123#"},
          Field{Label, "txtDescription",
                "-= (null)= (NULL)=(NULL) 1234567890123456789012345678901=Desk \"=\""}})
        for (const std::string& word : Words(field.Stored_And_Shown)) {
            SCOPED_TRACE(field.Control + " " + word);
            const std::string stored = word.substr(0, word.find('='));
            const Lines lines = Shown({{field.Where, Stored(stored)}});
            EXPECT_EQ(Text_Of(lines, field.Control), word.substr(stored.size() + 1));
            EXPECT_FALSE(Last_Control(lines, "cmdApply").at("enabled"));
            EXPECT_EQ(Last_Record(lines), Success);
        }
    EXPECT_EQ(Text_Of(Shown({{Hook_Flash, " 800 "}}), "cmbHookFlash"), "800");
    EXPECT_EQ(Text_Of(Shown({{Label, "  x "}}), "txtDescription"), "  x ");
}

TEST_F(Stored_Values, Of_A_Detail_Record_Have_Defaults_Only_For_Nulls) {
    struct Case {
        std::string Control, When_Null;
        const char* Too_Large;
        std::string Bound;
    };
    const Case cases[] = {{"txtRetrieve", "!", "12345678", "!#"},  {"cmbBusyRetry", "4", "31", "30"},
                          {"cmbNumRetries", "3", "99", "30"},      {"cmbRingLimit", "5", "21", "20"},
                          {"cmbBusyOn", "500", "1501", "1500"},    {"cmbBusyOff", "500", "9999", "1500"},
                          {"cmbRingOn", "2000", "10001", "10000"}, {"cmbRingOff", "4000", "99999", "10000"}};
    for (std::size_t column = 0; column < std::size(cases); ++column) {
        const Case& stored = cases[column];
        SCOPED_TRACE(stored.Control);
        for (const Changes& type : {Changes{}, Changes{{Type, "4"}}}) {
            auto shown = [&](const char* value) {
                return Text_Of(Shown(type, Changed(Sound_Detail, {{column, value}})), stored.Control);
            };
            EXPECT_EQ(shown(nullptr), stored.When_Null);
            EXPECT_EQ(shown("(null)"), column == 0 ? "!" : Sound_Detail[column]);
            EXPECT_EQ(shown(""), "");
            EXPECT_EQ(shown(stored.Too_Large), stored.Bound);
            EXPECT_EQ(shown("0"), "0"); // raised only when the field is left
        }
    }
}

TEST_F(Stored_Values, Below_The_Minimum_Are_Raised_And_Marked_When_The_Focus_Passes_Through) {
    const std::string show = "\nshow cmbHookFlash cmdApply\n";
    const Lines controls = Only(Play({{Hook_Flash, "30"}}, "shown 1 1 2\nfocus cmbHookFlash" + show +
                                                               "key Tab" + show + "answer discard\nclose"),
                                "control");
    ASSERT_EQ(controls.size(), 4U);
    EXPECT_TRUE(controls[0].at("text") == "30" && controls[1].at("enabled") == false);
    EXPECT_TRUE(controls[2].at("text") == "50" && controls[3].at("enabled") == true);
}

TEST_F(Stored_Values, A_Threshold_Is_Selected_By_Its_Identifier) {
    const std::map<std::string, int> indices{{"7", 0},  {"-", 0},   {"8", 7},   {"99", 4},
                                             {"-3", 4}, {"1.4", 1}, {"2.5", 2}, {" 6 ", 6}};
    for (const auto& [stored, index] : indices) {
        const Lines lines = Shown({{Threshold, Stored(stored)}});
        EXPECT_EQ(Last_Control(lines, "cmbThreshold").at("index"), index) << stored;
        EXPECT_FALSE(Last_Control(lines, "cmdApply").at("enabled")) << stored;
    }
}

TEST_F(Stored_Values, Of_No_Supervised_Type_Change_No_Option_And_Load_No_Details) {
    for (const char* type : {"9", "5", "-1", "-32768", "32767"}) {
        SCOPED_TRACE(type);
        const Lines lines = Shown({{Type, type}, {Hook_Flash, "800"}, {Transfer, "5"}});
        EXPECT_TRUE(Last_Control(lines, "optPartial").at("value"));
        EXPECT_EQ(Text_Of(lines, "cmbHookFlash") + Text_Of(lines, "txtTransfer"), "8005");
        EXPECT_EQ(Text_Of(lines, "cmbRingOff"), "950");
        EXPECT_EQ(Last_Control(lines, "lblRecordPosition").at("caption"), "2 of 2");
        EXPECT_EQ(Calls(lines).back(), "Get_Partial_Detail(1,1,1)");
        // Shown first, it leaves the flag as the host wrote it.
        const Lines alone =
            Play({{Type, type}}, "blind true\nshown 1 1 2\nclick optFull\nshow\nanswer discard\nclose\n");
        EXPECT_EQ(Text_Of(alone, "cmbRingOff"), "4000");
    }
}

TEST_F(Stored_Values, That_Cannot_Be_Converted_Are_Reported) {
    const std::string place = "[KOR_STYLE_Node][Busyness_Rules]";
    const Record null{false, place + "Node_Editor_Populated", 94, "Invalid use of Null"};
    const Record unlisted{false, place + "Node_Editor_Populated", 13, "Type mismatch"};
    const Record mismatch{false, place + "Reflect_The_Node_Into_The_Dialog", 13, "Type mismatch"};
    const Record overflow{false, place + "Reflect_The_Node_Into_The_Dialog", 6, "Overflow"};
    struct Case {
        Column Where;
        const char* Value;
        Record Reported;
        std::string Hook_Flash; // as far as the node was shown; empty when it was not listed
    };
    for (const Case& bad :
         {Case{Type, nullptr, null, ""}, Case{Number, "x", unlisted, ""}, Case{Type, "", mismatch, "700"},
          Case{Type, "32768", overflow, "700"}, Case{Threshold, "x", mismatch, "800"},
          Case{Threshold, "40000", overflow, "800"}}) {
        // The list and the button both close the dialog after it; the person keeps it open, to look.
        const Lines lines =
            Play({{Hook_Flash, "800"}, {Label, "Other"}, {bad.Where, bad.Value}},
                 "shown 1 1 1\nanswer cancel\nanswer cancel\nclick cmdNext\nshow cmbHookFlash\n"
                 "answer discard\nclose\n");
        EXPECT_EQ(Last_Record(lines), bad.Reported);
        const Lines controls = Only(lines, "control");
        EXPECT_EQ(controls.empty() ? "" : controls[0].at("text"), bad.Hook_Flash) << bad.Reported;
    }
}

TEST_F(Stored_Values, That_Overflow_Close_The_Dialog_Before_It_Is_Seen) {
    const std::string script = "answer discard\nshown 1 1 2\nshow form\n";
    const Lines hook_flash = Play({{Hook_Flash, "9e99"}}, script);
    EXPECT_EQ(Last_Record(hook_flash).Location, "[KOR_STYLE_Node][dlgGUI]cmbHookFlash_Change");
    EXPECT_EQ(Only(hook_flash, "box").size(), 1U) << "the label that was written before counts as a change";
    EXPECT_FALSE(Last_Of(hook_flash, "form").at("loaded"));
    // A dial string's overflow is only reported, but the first node must be shown without an error.
    const std::string endless = Repeated(40000, '1');
    const Lines transfer = Play({{Transfer, endless.c_str()}}, script);
    EXPECT_EQ(Last_Record(transfer).Location, "[KOR_STYLE_Node][dlgGUI]txtTransfer_Change");
    EXPECT_FALSE(Last_Of(transfer, "form").at("loaded"));
}

TEST_F(Stored_Values, A_Dialog_That_Stayed_Loaded_Keeps_Its_Accepted_Texts) {
    // The node fails to be shown and the person refuses both closings: the dialog stays, hidden.
    const Row failing = Node("2", {{Threshold, "x"}, {Hook_Flash, "800"}});
    const Lines lines = session.Play(
        "answer cancel\nanswer cancel\nshown 1 1 2\nshow form\nshown 1 1 1\nshow cmbHookFlash "
        "cmbRingOff\nclose\n"
        "shown 1 1 1\nshow cmbHookFlash cmbRingOff\nclose",
        Reply(session, "Get_Style_Nodes@1", Style_Nodes({failing})) +
            Reply(session, "Get_Style_Nodes", Style_Nodes({Node("1", {{Hook_Flash, "12345"}})})));
    EXPECT_EQ(Only(lines, "box").size(), 2U);
    EXPECT_TRUE(Last_Of(lines, "form").at("loaded") && !Last_Of(lines, "form").at("visible"));
    const Lines controls = Only(lines, "control");
    ASSERT_EQ(controls.size(), 4U);
    EXPECT_EQ(controls[0].at("text"), "800"); // the same instance: 12345 is refused for it
    EXPECT_EQ(controls[1].at("count"), 400);  // and its lists were filled once more
    EXPECT_EQ(controls[2].at("text"), "");
    EXPECT_EQ(controls[3].at("count"), 200);
}
