// Faults at every place of a long script, and jobs that end before their dialog is shown: nothing crashes,
// nothing leaks, and the record names the procedure that met the fault.
#include "automation/unknown.h"
#include "editor_files.h"
#include "modules_in_use.h"

namespace {

namespace fs = std::filesystem;

// Every verb, every type, every operation: two jobs with saves, a node that is not there, an internal error.
constexpr const char* Long_Script = R"(shown 1 1 1
show
items cmbThreshold
click optBlind
click cmdApply
click optPartial
insert txtTransfer 1 2
click cmdApply
click optFull
type cmbHookFlash 1
backspace cmbHookFlash 2
focus cmbRingOn
key Tab
click cmdApply
click optDialContinue
pick cmbThreshold 2
click cmdApply
click optEnhanced
paste txtDescription "a new label"
answer save
click cmdNext
click cmdLast
click cmdPrevious
click cmdFirst
paste txtDescription discarded
answer discard
pick cmbNode 2
pick cmbNode 3
pick cmbNode 6
paste txtDescription stays
answer cancel
pick cmbNode 1
answer cancel
close
answer discard
key Escape
new
blind true
shown 1 2 99
shown 1 2 0
paste txtDescription default
key Enter
shown 1 1 1 2
shown 1 1 1 0 silent
new
shown 1 2 7
paste txtDescription "no \" here"
answer ok
click cmdOK
paste txtDescription gate
click cmdOK
)";

const std::map<std::string, std::string> Procedures{
    {"Get_All_Node_Types", "[Busyness_Rules]Obtain_All_Node_Type_Name"},
    {"Get_All_Threshold_Types", "[Busyness_Rules]Load_All_Threshold"},
    {"Get_Partial_Detail", "[Busyness_Rules]Load_Partial_Info"},
    {"Get_Full_Detail", "[Busyness_Rules]Load_Full_Info"},
    {"Get_DialContinue_Detail", "[Busyness_Rules]Load_DialContinue_Info"},
    {"Get_Enhanced_Detail", "[Busyness_Rules]Load_Full_Info"}, // its loader's name is the Full one's
};

class Faults : public ::testing::Test {
protected:
    Faults() {
        fs::create_directories(session.Folder() / "Velmorant" / "ZEBRIX");
        fs::copy_file(session.Folder() / "store.db", session.Folder() / "pristine.db");
    }

    // On a store as it was at first; whatever was created has to be gone afterwards.
    Lines Play(const std::string& script, const Options& options) {
        fs::copy_file(session.Folder() / "pristine.db", session.Folder() / "store.db",
                      fs::copy_options::overwrite_existing);
        const Lines lines = session.Play(script, options);
        EXPECT_EQ(automation::Live_Objects(), 0) << "a proxy is left";
        EXPECT_EQ(Modules_In_Use(), 0) << "an object is left";
        EXPECT_EQ(session.Status(), 0) << session.Errors();
        for (const Line& result : Only(lines, "result"))
            EXPECT_EQ(result.at("shown"), result.at("ErrDescription") == "") << result;
        return lines;
    }

    // How the procedure that meets the K-th call of the operation reports itself; empty when nobody does.
    std::string Procedure_Of(const std::string& operation, std::size_t which,
                             const Lines& trouble_free) const {
        if (const auto found = Procedures.find(operation); found != Procedures.end())
            return found->second;
        if (operation == "Get_Configuration_Info")
            return {};
        std::string before;
        Line box;
        for (const Line& line : trouble_free) {
            const bool is_box = line.at("event") == "box" && line.at("by") == "product";
            const std::string name = is_box ? "Show_Box" : line.value("operation", "");
            if (name == operation && --which == 0) {
                box = line;
                break;
            }
            before = name.empty() ? before : name;
        }
        if (operation == "Get_Style_Nodes")
            return before == "Get_All_Threshold_Types" ? "[Busyness_Rules]Node_Editor_Populated"
                                                       : "[Busyness_Rules]Save_Changes";
        if (operation != "Show_Box")
            return "[Busyness_Rules]Save_Changes";
        return box.at("kind") == 1   ? "[Busyness_Rules]Confirmation_MsgBox"
               : box.at("kind") == 2 ? "[dlgGUI]Selected_Node_Not_Found"
                                     : "";
    }

    // What is recorded at the end of any of the jobs.
    static bool Is_Recorded(const Lines& lines, const Record& wanted) {
        const Lines results = Only(lines, "result");
        return std::any_of(results.begin(), results.end(),
                           [&](const Line& result) { return Record_Of(result) == wanted; });
    }

    // The component of an operation, and how often the script calls it.
    struct Use {
        std::string Component;
        std::size_t Count = 0;
    };
    static std::map<std::string, Use> Uses(const Lines& trouble_free) {
        std::map<std::string, Use> uses;
        for (const Line& line : trouble_free) {
            const bool is_box = line.at("event") == "box" && line.at("by") == "product";
            if (!is_box && line.at("event") != "call")
                continue;
            auto& use = uses[is_box ? "Show_Box" : line.at("operation")];
            use.Component = is_box ? "KOR_MsgBox.Busyness_Rules" : line.at("component");
            ++use.Count;
        }
        return uses;
    }

    Editor_Session session;
};

TEST_F(Faults, At_Every_Call_Are_Recorded_Where_They_Are_Met) {
    const Lines trouble_free = Play(Long_Script, {"--trace"});
    EXPECT_TRUE(Only(trouble_free, "refused").empty());
    const auto uses = Uses(trouble_free);
    EXPECT_EQ(uses.size(), 21U) << "the script calls every operation";
    const Options junk{session.File("empty", ""), session.File("cut", Style_Nodes({{"1"}}).substr(0, 500)),
                       session.File("doctype", "<!DOCTYPE xml>" + Style_Nodes({}))};
    for (const auto& [operation, use] : uses)
        for (std::size_t which = 1; which <= use.Count; ++which) {
            const std::string target = operation + "@" + std::to_string(which);
            SCOPED_TRACE(target);
            const std::string procedure = Procedure_Of(operation, which, trouble_free);
            const Record failed{false, "[" + use.Component + "]" + procedure, -2147418113, "no luck"};
            const Lines lines = Play(Long_Script, {"--fail", target + "=-2147418113:no luck"});
            EXPECT_EQ(Is_Recorded(lines, failed), !procedure.empty()) << failed;
            Play(Long_Script, {"--fail", target + "=-2147418113:"}); // an error that nobody can see
            if (!operation.starts_with("Get_"))
                continue;
            // An unreadable answer is reported twice; the second report says who could not go on.
            const Record unreadable{false, "[KOR_STYLE_Node]" + procedure, 91, Not_Set};
            const Lines more = Play(Long_Script, {"--reply", target + "=" + junk[which % junk.size()]});
            EXPECT_EQ(Is_Recorded(more, unreadable), !procedure.empty()) << unreadable;
        }
}

// The dialog that a failed job leaves behind is the next job's, with its lists and its pointer.
TEST_F(Faults, A_Job_Takes_Over_The_Dialog_That_Was_Left) {
    const struct {
        const char *Between, *Failing;
        int Pointer, Ring_Limits, Thresholds;
    } cases[] = {
        {"", "Get_All_Node_Types@1", 11, 20, 8},
        {"new\n", "Get_All_Node_Types@1", 11, 20, 8},
        {"", "Get_All_Threshold_Types@1", 0, 40, 8},
        {"new\n", "Get_All_Threshold_Types@1", 0, 40, 8},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.Between) + row.Failing);
        const Lines lines = Play(std::string("shown 1 2 3\nshow form\n") + row.Between +
                                     "shown 1 2 7\nshow\npaste txtDescription x\nanswer discard\nclick "
                                     "cmdNext\nshow form\nclick cmdOK\nshow form\n"
                                     "shown 1 2 7\nshow",
                                 {"--fail", row.Failing});
        const Lines forms = Only(lines, "form");
        const Lines results = Only(lines, "result");
        ASSERT_EQ(forms.size(), 5U);
        EXPECT_EQ(results[0].at("shown"), false);
        EXPECT_EQ(Record_Of(results[1]), Success) << "the record starts empty";
        EXPECT_EQ(forms[0].at("visible"), false);
        for (const int index : {0, 1, 2}) {
            EXPECT_EQ(forms[static_cast<std::size_t>(index)].at("mouse_pointer"), row.Pointer) << index;
            EXPECT_EQ(forms[static_cast<std::size_t>(index)].at("screen_pointer"), row.Pointer) << index;
        }
        EXPECT_EQ(forms[3].at("loaded"), false);
        EXPECT_EQ(forms[4].at("screen_pointer"), 0) << "a fresh dialog with the normal pointer";
        Line counts = Line::array();
        for (const Line& control : Only(lines, "control"))
            if (control.at("name") == "cmbRingLimit" || control.at("name") == "cmbThreshold" ||
                control.at("name") == "cmbNode")
                counts.push_back(control.at("count"));
        EXPECT_EQ(counts, Line({row.Thresholds, row.Ring_Limits, 3, 8, 20, 3}));
    }
}

// An error while the first node is shown closes the dialog, unless the user holds on to it: then it stays
// hidden, and the hidden list keeps its entries when the visible one is filled again.
TEST_F(Faults, A_Close_That_Is_Refused_While_Loading_Leaves_The_Dialog_Hidden) {
    const Options nodes =
        Reply(session, "Get_Style_Nodes@1", Style_Nodes({{"3", "three", "none"}, {"7", "seven", "1"}}));
    const Record mismatch{false, "[KOR_STYLE_Node][Busyness_Rules]Reflect_The_Node_Into_The_Dialog", 13,
                          "Type mismatch"};
    const Lines given_up = Play("answer discard\nshown 1 2 3\nshow form", nodes);
    EXPECT_EQ(Last_Record(given_up), mismatch);
    EXPECT_EQ(Last_Of(given_up, "form").at("loaded"), false);
    EXPECT_EQ(Only(given_up, "box").size(), 1U);

    const Lines lines = Play(
        "answer cancel\nanswer cancel\nshown 1 2 3\nshow form\n"
        "shown 1 2 7\nshow\nitems cmbNode\nitems lstSupervisedTypeID\nclick cmdNext\nshow txtDescription",
        nodes);
    EXPECT_EQ(Record_Of(Only(lines, "result")[0]), mismatch);
    EXPECT_EQ(Only(lines, "form")[0].at("visible"), false);
    EXPECT_EQ(Only(lines, "form")[0].at("loaded"), true);
    EXPECT_EQ(Only(lines, "items")[0].at("items"), Line({"STYLE 3", "STYLE 7", "STYLE 9"}));
    EXPECT_EQ(Only(lines, "items")[1].at("items"), Line({"none", "1", "1", "2", "4"}));
    EXPECT_EQ(Last_Control(lines, "txtDescription").at("text"), "Gate");
    EXPECT_EQ(Last_Record(lines), Success);
}

// Nested handlers unload the dialog under the procedures on the stack.
TEST_F(Faults, A_Field_That_Fails_Closes_The_Dialog_Under_Everybody) {
    const Options nodes = Reply(session, "Get_Style_Nodes",
                                Style_Nodes({{"3", "three", "1", "9e99", "7", "1", "2"},
                                             {"7", "seven", "2", "500", "7"},
                                             {"9", "nine", "1", "9e99", "7"}}));
    const Record overflow{false, "[KOR_STYLE_Node][dlgGUI]cmbHookFlash_Change", 6, "Overflow"};
    for (const char* script :
         {"answer discard\nshown 1 2 3\nshow form",
          "answer discard\nshown 1 2 7\nclick cmdPrevious\nshow form",
          "shown 1 2 7\nanswer discard\nclick cmdLast\nshow form",
          "answer discard\nshown 1 2 7\npick cmbNode 2\nshow form",
          "shown 1 2 7\npaste txtDescription x\nanswer discard\nanswer discard\nclick cmdNext\nshow form",
          // Refused in the field, closed by the list, whose node is shown by then.
          "answer cancel\nshown 1 2 3\nshow form", "shown 1 2 7\nanswer cancel\nclick cmdNext\nshow form",
          "shown 1 2 7\nanswer discard\npaste cmbHookFlash 9e99\nshow form"}) {
        const Lines lines = Play(std::string(script) + "\nshown 1 2 7\nshow form", nodes);
        EXPECT_EQ(Record_Of(Only(lines, "result")[0]), overflow) << script;
        EXPECT_EQ(Only(lines, "form")[0].at("loaded"), false) << script;
        EXPECT_EQ(Last_Of(lines, "form").at("visible"), true) << "the next job has a dialog: " << script;
        EXPECT_EQ(Last_Of(lines, "form").at("screen_pointer"), 0) << script;
        EXPECT_EQ(Last_Record(lines), Success) << script;
    }
}

} // namespace
