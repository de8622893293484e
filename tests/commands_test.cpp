// Moving between nodes, and the ways out of the dialog, with and without unsaved changes.
#include "editor_files.h"

namespace {

const std::string Pending = "paste txtDescription changed\n";

// Three nodes, the middle one open. The label of the shown node tells which it is.
class Commands : public ::testing::Test {
protected:
    Lines Play(const std::string& script, const Options& more = {}) {
        return session.Play("shown 1 1 7\n" + script,
                            Reply(session, "Get_Style_Nodes",
                                  Style_Nodes({{"3", "three", "0", "300", "7"},
                                               {"7", "seven", "1", "700", "7"},
                                               {"9", "nine", "2", "900", "7"}})) +
                                Reply(session, "Get_Partial_Detail", Detail({{"!"}})) + Options{"--trace"} +
                                more);
    }

    Editor_Session session;
};

// One verb for each entry, in order.
std::string Answers(const Options& answers) {
    std::string script;
    for (const std::string& answer : answers)
        script += "answer " + answer + "\n";
    return script;
}

std::vector<std::string> Box_Authors(const Lines& lines) {
    std::vector<std::string> authors;
    for (const Line& box : Only(lines, "box"))
        authors.push_back(box.at("by"));
    return authors;
}

bool Saved(const Lines& lines) {
    const Options operations = Operations(lines);
    return std::find(operations.begin(), operations.end(), "Update_Style_Node") != operations.end();
}

TEST_F(Commands, Without_Changes_Every_Move_Is_Made_And_Nothing_Is_Asked) {
    const struct {
        const char *Script, *Label, *Position;
        bool Back, On;
    } cases[] = {
        {"click cmdNext", "nine", "3 of 3", true, false},
        {"click cmdPrevious", "three", "1 of 3", false, true},
        {"click cmdFirst", "three", "1 of 3", false, true},
        {"click cmdLast", "nine", "3 of 3", true, false},
        {"pick cmbNode 0", "three", "1 of 3", false, true},
        {"pick cmbNode 1", "seven", "2 of 3", true, true},
        {"click cmdFirst\nclick cmdNext", "seven", "2 of 3", true, true},
        {"click cmdFirst\nclick cmdLast\nclick cmdPrevious", "seven", "2 of 3", true, true},
    };
    for (const auto& row : cases) {
        const Lines lines = Play(std::string(row.Script) + "\nshow");
        const Texts texts{{"txtDescription", row.Label}, {"lblRecordPosition", row.Position}};
        EXPECT_EQ(Shown_Texts(lines, texts), texts) << row.Script;
        const std::map<std::string, bool> enabled{{"cmdFirst", row.Back},
                                                  {"cmdPrevious", row.Back},
                                                  {"cmdNext", row.On},
                                                  {"cmdLast", row.On},
                                                  {"cmdApply", false}};
        for (const auto& [name, wanted] : enabled)
            EXPECT_EQ(Last_Control(lines, name).at("enabled"), wanted) << row.Script << " " << name;
        EXPECT_TRUE(Only(lines, "box").empty()) << row.Script;
        EXPECT_EQ(Last_Of(lines, "form").at("mouse_pointer"), 0) << row.Script;
        EXPECT_EQ(Last_Record(lines), Success) << row.Script;
    }
    const Lines lines = Play("click cmdLast\nclick cmdNext\nclick cmdLast\nclick cmdHelp");
    EXPECT_EQ(Only(lines, "refused").size(), 3U) << "switched off at the end of the list, and never visible";
}

// A product that has gone wrong may list more nodes than an Integer counts: backwards is still a way.
TEST_F(Commands, Beyond_16_Bits_Only_Moves_That_Need_The_End_Of_The_List_Overflow) {
    const Rows nodes(33000, {"5", "five", "0", "500", "7"});
    const Options list = Reply(session, "Get_Style_Nodes", Style_Nodes(nodes));
    const struct {
        const char *Button, *Error;
    } cases[] = {{"cmdPrevious", ""},
                 {"cmdFirst", ""},
                 {"cmdNext", "[KOR_STYLE_Node][dlgGUI]cmdNext_Click"},
                 {"cmdLast", "[KOR_STYLE_Node][dlgGUI]cmdLast_Click"}};
    for (const auto& row : cases) {
        const Lines lines =
            session.Play("shown 1 1 5\npick cmbNode 2\nclick " + std::string(row.Button), list);
        EXPECT_EQ(Last_Of(lines, "result").at("ErrLocation"), row.Error) << row.Button;
    }
}

TEST_F(Commands, With_Changes_A_Move_Asks_Once) {
    enum class End { Moved, Stayed };
    const struct {
        const char *Answer, *Box_Answer;
        End Then;
        bool Is_Saved;
    } answers[] = {{"save", "2", End::Moved, true},     {"discard", "3", End::Moved, false},
                   {"cancel", "4", End::Stayed, false}, {"ok", "1", End::Stayed, false},
                   {"0", "0", End::Stayed, false},      {"99", "99", End::Stayed, false},
                   {"-2", "-2", End::Stayed, false}};
    for (const char* move : {"click cmdNext", "click cmdLast", "click cmdPrevious", "click cmdFirst",
                             "pick cmbNode 2", "pick cmbNode 1"})
        for (const auto& row : answers) {
            SCOPED_TRACE(std::string(move) + " " + row.Answer);
            const Lines lines = Play(Pending + Answers({row.Answer}) + move + "\nshow");
            const std::string_view way = move;
            const bool picked = way.starts_with("pick");
            const bool back = way.ends_with("Previous") || way.ends_with("First");
            const char* target = way == "pick cmbNode 1" ? "seven" : back ? "three" : "nine";
            // A pick that was refused loads the stored values of the node again and leaves Apply on.
            const char* stayed = picked ? "seven" : "changed";
            EXPECT_EQ(Last_Control(lines, "txtDescription").at("text"),
                      row.Then == End::Moved ? target : stayed);
            EXPECT_EQ(Last_Control(lines, "cmdApply").at("enabled"), row.Then == End::Stayed);
            EXPECT_EQ(Last_Control(lines, "cmbNode").at("index"), row.Then == End::Stayed ? 1
                                                                  : target[0] == 't'      ? 0
                                                                  : target[0] == 's'      ? 1
                                                                                          : 2);
            EXPECT_EQ(Saved(lines), row.Is_Saved);
            const Lines boxes = Only(lines, "box");
            ASSERT_FALSE(boxes.empty());
            EXPECT_EQ(boxes[0], Line::parse(std::string(R"({"event":"box","by":"product","language":1,)"
                                                        R"("text":"Do you want to save changes?","kind":1,)"
                                                        R"("buttons":3,"title":"Confirmation","answer":)") +
                                            row.Box_Answer + "}"));
            EXPECT_EQ(boxes.size(), row.Then == End::Stayed ? 2U : 1U) << "the second is asked at the end";
            EXPECT_EQ(Last_Record(lines), Success);
        }
}

TEST_F(Commands, With_Changes_Every_Way_Out_But_OK_Asks) {
    const struct {
        const char* Answer;
        bool Closes, Is_Saved;
    } answers[] = {{"save", true, true},
                   {"discard", true, false},
                   {"cancel", false, false},
                   {"ok", false, false},
                   {"7", false, false}};
    for (const char* way : {"click cmdCancel", "key Escape", "close"}) {
        for (const auto& row : answers) {
            const Lines lines = Play(Pending + Answers({row.Answer}) + way + "\nshow form");
            EXPECT_EQ(Last_Of(lines, "form").at("loaded"), !row.Closes) << way << " " << row.Answer;
            EXPECT_EQ(Saved(lines), row.Is_Saved) << way << " " << row.Answer;
            EXPECT_EQ(Last_Record(lines), Success) << way << " " << row.Answer;
        }
        const Lines unchanged = Play(std::string(way) + "\nshow form");
        EXPECT_EQ(Last_Of(unchanged, "form").at("loaded"), false) << way;
        EXPECT_TRUE(Only(unchanged, "box").empty()) << way;
    }
    for (const char* way : {"click cmdOK", "key Enter"})
        for (const bool pending : {false, true}) {
            const Lines lines = Play((pending ? Pending : "") + way + "\nshow form");
            EXPECT_EQ(Last_Of(lines, "form").at("loaded"), false) << way;
            EXPECT_TRUE(Only(lines, "box").empty()) << way;
            EXPECT_EQ(Saved(lines), pending) << way;
        }
}

// The box of the product fails, or answers that it could not be shown: its error is the record, and a
// navigation then closes the dialog, which asks again.
TEST_F(Commands, A_Question_That_Fails_Keeps_The_Changes_Until_The_Close) {
    const Record not_shown{false, "KOR_MsgBox", Unspecified, "The message box could not be shown"};
    const Record failed{false, "[KOR_MsgBox.Busyness_Rules][Busyness_Rules]Confirmation_MsgBox", -2147418113,
                        "broken"};
    const Options break_first{"--fail", "Show_Box@1=-2147418113:broken"};
    const struct {
        const char *Way, *Second;
        bool Stays;
    } cases[] = {{"click cmdNext", "discard", false},
                 {"click cmdNext", "cancel", true},
                 {"click cmdCancel", "save", true},
                 {"close", "save", true}};
    for (const auto& row : cases)
        for (const bool fails : {false, true}) {
            SCOPED_TRACE(std::string(row.Way) + row.Second);
            const Lines lines =
                Play(Pending + Answers(fails ? Options{row.Second} : Options{"fail", row.Second}) + row.Way +
                         "\nshow\nanswer discard",
                     fails ? break_first : Options{});
            EXPECT_EQ(Last_Of(lines, "form").at("loaded"), row.Stays);
            if (row.Stays) {
                EXPECT_EQ(Last_Control(lines, "txtDescription").at("text"), "changed");
                EXPECT_EQ(Last_Control(lines, "cmdApply").at("enabled"), true);
            }
            EXPECT_EQ(Last_Record(lines), fails ? failed : not_shown);
        }
}

// "Illegal": the platform's box; Apply stays on.
TEST_F(Commands, A_Refused_Label_Is_Asked_For_Again_And_Lost_In_The_End) {
    const std::string illegal = "paste txtDescription \"a \\\"b\\\"\"\n";
    const Options ask{"product", "platform"};
    const struct {
        const char* Way;
        Options Given, Boxes;
        const char* Label;
        bool Apply, Closed;
    } cases[] = {
        {"click cmdApply", {}, {"platform"}, "a \"b\"", true, false},
        {"click cmdOK", {}, {"platform"}, "a \"b\"", true, false},
        {"key Enter", {}, {"platform"}, "a \"b\"", true, false},
        {"close", {"save"}, ask, "a \"b\"", true, false},
        {"click cmdCancel", {"save"}, ask, "a \"b\"", true, false},
        // The button, the list and the move each ask; the last answer does not hold the move up.
        {"click cmdNext", {"save", "ok", "save", "ok", "save", "ok"}, ask + ask + ask, "nine", false, false},
        {"pick cmbNode 2", {"save", "ok", "save", "ok"}, ask + ask, "nine", false, false},
        {"click cmdNext", {"save", "ok", "discard"}, ask + Options{"product"}, "nine", false, false},
        // Back to the entry shown, whose stored label is loaded again.
        {"click cmdNext", {"save", "ok", "cancel"}, ask + Options{"product"}, "seven", true, false},
        {"pick cmbNode 2", {"cancel"}, {"product"}, "seven", true, false},
        // The move itself is refused: the list already shows the next entry.
        {"click cmdNext",
         {"save", "ok", "save", "ok", "cancel"},
         ask + ask + Options{"product"},
         "a \"b\"",
         true,
         false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.Way) + " " + std::to_string(row.Given.size()));
        const Lines lines = Play(illegal + Answers(row.Given) + row.Way + "\nshow\nanswer discard\nclose");
        Options boxes = Box_Authors(lines);
        if (row.Apply)
            boxes.pop_back(); // the one of the close
        EXPECT_EQ(boxes, row.Boxes);
        EXPECT_EQ(Last_Control(lines, "txtDescription").at("text"), row.Label);
        EXPECT_EQ(Last_Control(lines, "cmdApply").at("enabled"), row.Apply);
        EXPECT_FALSE(Saved(lines));
        EXPECT_EQ(Last_Record(lines), Success);
        for (const Line& box : Only(lines, "box"))
            if (box.at("by") == "platform") {
                EXPECT_EQ(
                    box, Line::parse(R"({"event":"box","by":"platform","text":"Double quotes and continuous )"
                                     R"(single quotes are not allowed in the Label Field","style":64,)"
                                     R"("title":"Information","answer":1})"));
            }
    }
}

// An error in a dial string leaves the dialog open; whatever navigates or saves next closes it.
TEST_F(Commands, A_Recorded_Error_Closes_The_Dialog_At_The_Next_Step) {
    const std::string overflow = "paste txtTransfer " + std::string(32768, '1') + "\nshow form\n";
    const Record in_dial_string{false, "[KOR_STYLE_Node][dlgGUI]txtTransfer_Change", 6, "Overflow"};
    for (const std::string step : {"click cmdNext", "click cmdFirst", "pick cmbNode 1", "pick cmbNode 0",
                                   Pending.c_str(), "paste cmbHookFlash 60\nclick cmdApply"}) {
        const bool pending = step == Pending;
        const Lines lines = Play(overflow + step + "\nshow form\n" +
                                 (pending ? "answer cancel\nclick cmdNext\nshow form\nanswer discard" : ""));
        const Lines forms = Only(lines, "form");
        EXPECT_EQ(forms[0].at("visible"), true) << step;
        EXPECT_EQ(forms[1].at("loaded"), pending) << step;
        EXPECT_EQ(Last_Of(lines, "form").at("loaded"), pending) << "the close was refused: " << step;
        EXPECT_EQ(Last_Record(lines), in_dial_string) << step;
    }
}

TEST_F(Commands, Keys_Press_Buttons_And_Move_The_Focus) {
    const Lines enter = Play("paste cmbHookFlash 30\nkey Enter");
    const Lines click = Play("paste cmbHookFlash 30\nclick cmdOK");
    const auto hook_flash = [](const Lines& lines) {
        for (const Line& call : Only(lines, "call"))
            if (call.at("operation") == "Update_Style_Node")
                return call.at("arguments").at(3).get<std::string>();
        return std::string("nothing saved");
    };
    EXPECT_EQ(hook_flash(enter), "30") << "Enter leaves the focus where it is";
    EXPECT_EQ(hook_flash(click), "50") << "the button takes it";

    const Lines other =
        Play("focus cmdNext\nkey Enter\nshow txtDescription\nfocus cmdCancel\nkey Enter\nshow form");
    EXPECT_EQ(Last_Control(other, "txtDescription").at("text"), "nine");
    EXPECT_EQ(Last_Of(other, "form").at("loaded"), false);

    const Options detailed{
        "txtDescription", "optBlind",      "optPartial",    "optFull",      "optDialContinue", "optEnhanced",
        "cmbHookFlash",   "txtTransfer",   "txtDisconnect", "cmbThreshold", "txtRetrieve",     "cmbBusyRetry",
        "cmbNumRetries",  "cmbRingLimit",  "cmbBusyOn",     "cmbBusyOff",   "cmbRingOn",       "cmbRingOff",
        "cmdOK",          "cmdCancel",     "cmdFirst",      "cmdPrevious",  "cmbNode",         "cmdNext",
        "cmdLast",        "txtDescription"};
    const Options blind{"txtDescription", "optBlind",     "optPartial",  "optFull",       "optDialContinue",
                        "optEnhanced",    "cmbHookFlash", "txtTransfer", "txtDisconnect", "cmdOK",
                        "cmdCancel",      "cmbNode",      "cmdNext",     "cmdLast",       "txtDescription"};
    for (const auto& [prefix, stops] :
         {std::pair{"", detailed}, {"click cmdFirst\nfocus txtDescription\n", blind}}) {
        std::string script = prefix;
        for (std::size_t stop = 0; stop < stops.size(); ++stop)
            script += "show form\nkey Tab\n";
        Options focused;
        for (const Line& form : Only(Play(script), "form"))
            focused.push_back(form.at("focus"));
        EXPECT_EQ(focused, stops);
    }
    const Lines apply = Play(Pending + "focus cmdApply\nclick cmdApply\nshow form");
    EXPECT_EQ(Last_Of(apply, "form").at("focus"), "cmdFirst")
        << "a button that is switched off loses the focus";
}

} // namespace
