// What a call plan does to a call, by its options. That the proxies carry it out on every operation is seen
// where the whole editor plays scripts.
#include <gtest/gtest.h>

#include <sstream>

#include "automation/text.h"
#include "faults/component_proxies.h"
#include "process/errors.h"
#include "temporary_folder.h"

namespace {

using namespace host;
using automation::Status;
using automation::Variant;

// A call of one operation, let through to a component that answers "real".
struct Called {
    Status Answer;
    bool Passed = false;
    std::string Result, Source, Description;
    Long Number = 0;
};

Called Call(Fault_Plan& plan, String_View operation) {
    Called called{};
    Variant result;
    const Variant first(u"1"), second(u"2");
    automation::Take_Error();
    called.Answer = plan.Call(operation, {&first, &second}, &result, [&] {
        called.Passed = true;
        result = Variant(u"real");
        return automation::Status_OK;
    });
    called.Result = automation::To_UTF8(result.To_Text());
    if (const auto error = automation::Take_Error()) {
        called.Source = automation::To_UTF8(error->Source);
        called.Number = error->Number;
        called.Description = automation::To_UTF8(error->Description);
    }
    return called;
}

TEST(Fault_Plan, Chooses_The_Failure_Of_A_Call) {
    struct Case {
        std::vector<std::string> Options;
        std::vector<Status> Statuses;
        std::vector<std::string> Descriptions;
    };
    const Status unspecified = automation::Status_Unspecified;
    const std::string injected = "Injected failure of Get_Style_Nodes";
    const Case cases[] = {
        {{"Get_Style_Nodes"}, {unspecified, unspecified, unspecified}, {injected, injected, injected}},
        {{"Get_Style_Nodes@3"}, {0, 0, unspecified}, {"", "", injected}},
        {{"Get_Style_Nodes=-7:"}, {-7, -7, -7}, {"", "", ""}},
        {{"Get_Style_Nodes", "Get_Style_Nodes@2=-2147483648:two"},
         {unspecified, INT32_MIN, unspecified},
         {injected, "two", injected}},
        {{"Get_Style_Nodes@1=2147483647:@:=", "Get_Style_Nodes@1=-1:later"},
         {unspecified, 0, 0},
         {"@:=", "", ""}},
        {{"Get_Full_Detail"}, {0, 0, 0}, {"", "", ""}},
    };
    for (const Case& given : cases) {
        SCOPED_TRACE(given.Options.front());
        Fault_Plan chosen;
        for (const std::string& option : given.Options)
            chosen.Add_Failure(option);
        for (std::size_t call = 0; call < 3; ++call) {
            const Called called = Call(chosen, u"Get_Style_Nodes");
            EXPECT_EQ(called.Answer, given.Statuses[call]);
            EXPECT_EQ(called.Description, given.Descriptions[call]);
            EXPECT_EQ(called.Passed, given.Statuses[call] == 0);
        }
    }
}

TEST(Fault_Plan, Prints_Fails_And_Answers) {
    const Temporary_Folder home;
    const std::string file = Write_File(home / "reply.xml", "\xC3\x84\r\n");
    std::ostringstream printed;
    Transcript transcript(printed);
    Fault_Plan plan;
    plan.Trace(transcript);
    plan.Add_Reply("Get_Full_Detail@2=" + file);
    plan.Add_Reply("Get_Full_Detail@3=" + file);
    plan.Add_Failure("Get_Full_Detail@3=380:in = between:");
    EXPECT_EQ(Call(plan, u"Get_Full_Detail").Result, "real");
    const Called answered = Call(plan, u"Get_Full_Detail");
    EXPECT_EQ(answered.Result, "\xC3\x84\r\n");
    EXPECT_FALSE(answered.Passed);
    const Called failed = Call(plan, u"Get_Full_Detail");
    EXPECT_EQ(failed.Answer, automation::Status_Unspecified);
    EXPECT_FALSE(failed.Passed);
    EXPECT_EQ(failed.Source, "ZEBdb.NODES");
    EXPECT_EQ(failed.Number, 380);
    EXPECT_EQ(failed.Description, "in = between:");
    const std::string line =
        R"({"event":"call","component":"ZEBdb.NODES","operation":"Get_Full_Detail","arguments":["1","2"]})"
        "\n";
    EXPECT_EQ(printed.str(), line + line + line);
}

TEST(Fault_Plan, Refuses_Options_That_Make_No_Sense) {
    Fault_Plan plan;
    for (const char* option :
         {"", "Get", "get_style_nodes", "Box_Error_Code", "Get_Style_Nodes@", "Get_Style_Nodes@0",
          "Get_Style_Nodes@-1", "Get_Style_Nodes@x", "Get_Style_Nodes@1@2",
          "Get_Style_Nodes=", "Get_Style_Nodes=5", "Get_Style_Nodes=x:y", "Get_Style_Nodes=:y",
          "Get_Style_Nodes=2147483648:y", "Get_Style_Nodes=1:\xFF", "\xFF"})
        EXPECT_THROW(plan.Add_Failure(option), Usage_Error) << option;
    for (const char* option : {"", "Get=f", "Get_Style_Nodes", "Get_Style_Nodes@0=f", "Update_Style_Node=f",
                               "Show_Box=f", "Prepare_Label=f", "Is_Label_Allowed=f"})
        EXPECT_THROW(plan.Add_Reply(option), Usage_Error) << option;
    for (const char* option : {"Get_Style_Nodes=/nowhere/at/all", "Get_Style_Nodes=/", "Get_Style_Nodes="})
        EXPECT_THROW(plan.Add_Reply(option), Start_Error) << option;
}

TEST(Missing_Class, Has_To_Be_A_Known_One) {
    for (const char* name : {"zebDB.detail", "LabelChecker", "KOR_MsgBox.Busyness_Rules"})
        EXPECT_NO_THROW(Require_Known_Class(name)) << name;
    for (const char* name : {"", "ZEBdb", "Label Checker", "\xFF"})
        EXPECT_THROW(Require_Known_Class(name), Usage_Error) << name;
}

} // namespace
