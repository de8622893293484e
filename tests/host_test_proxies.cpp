// Call plans, and the proxies that carry them out on every operation of the product's components.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "automation/class_table.h"
#include "host/component_proxies.h"
#include "interfaces/product_components.h"

namespace {

using namespace host;
using automation::Failure;
using automation::Status;
using automation::Variant;

// Counts what gets through to it; every reader answers "real".
int passed = 0;

Status Real(Variant& result) {
    ++passed;
    result = Variant(u"real");
    return automation::Status_OK;
}
Status Real() {
    ++passed;
    return automation::Status_OK;
}

using V = const Variant&;
namespace product = interfaces;

struct SR final : automation::Object<product::SR> {
    Status Get_All_Node_Types(Variant& r) override { return Real(r); }
    Status Get_All_Threshold_Types(Variant& r) override { return Real(r); }
};
struct NODES final : automation::Object<product::NODES> {
    Status Get_Full_Detail(V, V, V, Variant& r) override { return Real(r); }
    Status Get_Partial_Detail(V, V, V, Variant& r) override { return Real(r); }
    Status Get_Enhanced_Detail(V, V, V, Variant& r) override { return Real(r); }
    Status Get_DialContinue_Detail(V, V, V, Variant& r) override { return Real(r); }
    Status Get_Style_Nodes(V, V, Variant& r) override { return Real(r); }
};
struct CONFIG final : automation::Object<product::CONFIG> {
    Status Get_Configuration_Info(Variant& r) override { return Real(r); }
};
struct UDNODES final : automation::Object<product::UDNODES> {
    Status Update_Style_Node(V, V, V, V, V, V, V, V, V, V) override { return Real(); }
    Status Update_Node_Entry(V, V, V, V, V, V) override { return Real(); }
};
struct DELNODES final : automation::Object<product::DELNODES> {
    Status Delete_Full_Detail(V, V, V) override { return Real(); }
    Status Delete_Partial_Detail(V, V, V) override { return Real(); }
    Status Delete_Enhanced_Detail(V, V, V) override { return Real(); }
    Status Delete_DialContinue_Detail(V, V, V) override { return Real(); }
};
struct INSNODES final : automation::Object<product::INSNODES> {
    Status Insert_DialContinue_Detail(V, V, V, V, V, V, V, V, V, V, V, V) override { return Real(); }
    Status Insert_Enhanced_Detail(V, V, V, V, V, V, V, V, V, V, V, V) override { return Real(); }
    Status Insert_Full_Detail(V, V, V, V, V, V, V, V, V, V, V, V) override { return Real(); }
    Status Insert_Partial_Detail(V, V, V, V, V, V, V, V, V, V, V, V) override { return Real(); }
};
struct Message_Box final : automation::Object<product::Message_Box> {
    Status Box_Error_Location(Variant& r) override { return Real(r); }
    Status Box_Error_Code(Long& r) override {
        r = 5;
        return Real();
    }
    Status Box_Error_Description(Variant& r) override { return Real(r); }
    Status Show_Box(V, V, V, V, V, Long& answer) override {
        answer = 3;
        return Real();
    }
};
struct Label_Checker final : automation::Object<product::Label_Checker> {
    Status Is_Label_Allowed(V, bool& allowed) override {
        allowed = true;
        return Real();
    }
    Status Prepare_Label(V, Variant& r) override { return Real(r); }
};

template <typename Class, typename Interface>
void Register(const automation::Identity& identity = {1, 2, 3, {}}) {
    automation::Register_Class(
        {String(Interface::Program_Identity), identity,
         []() -> automation::Reference<automation::Unknown> { return automation::Make_Object<Class>(); }});
}

// Calls an operation by its name, with the arguments "1", "2", ... as far as it takes any.
struct Caller {
    const char* Component;
    const char* Operation;
    int Arguments;
    std::function<Status(Variant& result)> Call;
};

template <typename Interface>
automation::Reference<Interface> New() {
    return automation::Create_Bound<Interface>(Interface::Program_Identity);
}

std::vector<Caller> All_Callers() {
    static const Variant a[] = {u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"10", u"11", u"12"};
    using namespace product;
    const auto detail = [](auto member) {
        return [=](Variant& r) { return (New<product::NODES>().Get()->*member)(a[0], a[1], a[2], r); };
    };
    const auto removal = [](auto member) {
        return [=](Variant&) { return (New<product::DELNODES>().Get()->*member)(a[0], a[1], a[2]); };
    };
    const auto insertion = [](auto member) {
        return [=](Variant&) {
            return (New<product::INSNODES>().Get()->*member)(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7],
                                                             a[8], a[9], a[10], a[11]);
        };
    };
    const char *sr = "ZEBdb.SR", *nodes = "ZEBdb.NODES", *ud = "ZEBud.UDNODES", *del = "ZEBdel.DELNODES",
               *ins = "ZEBins.INSNODES", *label = "LabelChecker", *box = "KOR_MsgBox.Busyness_Rules";
    return {
        {sr, "Get_All_Node_Types", 0, [](Variant& r) { return New<product::SR>()->Get_All_Node_Types(r); }},
        {sr, "Get_All_Threshold_Types", 0,
         [](Variant& r) { return New<product::SR>()->Get_All_Threshold_Types(r); }},
        {nodes, "Get_Full_Detail", 3, detail(&product::NODES::Get_Full_Detail)},
        {nodes, "Get_Partial_Detail", 3, detail(&product::NODES::Get_Partial_Detail)},
        {nodes, "Get_Enhanced_Detail", 3, detail(&product::NODES::Get_Enhanced_Detail)},
        {nodes, "Get_DialContinue_Detail", 3, detail(&product::NODES::Get_DialContinue_Detail)},
        {nodes, "Get_Style_Nodes", 2,
         [](Variant& r) { return New<product::NODES>()->Get_Style_Nodes(a[0], a[1], r); }},
        {"ZEBdb.CONFIG", "Get_Configuration_Info", 0,
         [](Variant& r) { return New<product::CONFIG>()->Get_Configuration_Info(r); }},
        {ud, "Update_Style_Node", 10,
         [](Variant&) {
             return New<product::UDNODES>()->Update_Style_Node(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7],
                                                               a[8], a[9]);
         }},
        {ud, "Update_Node_Entry", 6,
         [](Variant&) {
             return New<product::UDNODES>()->Update_Node_Entry(a[0], a[1], a[2], a[3], a[4], a[5]);
         }},
        {del, "Delete_Full_Detail", 3, removal(&product::DELNODES::Delete_Full_Detail)},
        {del, "Delete_Partial_Detail", 3, removal(&product::DELNODES::Delete_Partial_Detail)},
        {del, "Delete_Enhanced_Detail", 3, removal(&product::DELNODES::Delete_Enhanced_Detail)},
        {del, "Delete_DialContinue_Detail", 3, removal(&product::DELNODES::Delete_DialContinue_Detail)},
        {ins, "Insert_DialContinue_Detail", 12, insertion(&product::INSNODES::Insert_DialContinue_Detail)},
        {ins, "Insert_Enhanced_Detail", 12, insertion(&product::INSNODES::Insert_Enhanced_Detail)},
        {ins, "Insert_Full_Detail", 12, insertion(&product::INSNODES::Insert_Full_Detail)},
        {ins, "Insert_Partial_Detail", 12, insertion(&product::INSNODES::Insert_Partial_Detail)},
        {label, "Is_Label_Allowed", 1,
         [](Variant&) {
             bool allowed = false;
             return New<product::Label_Checker>()->Is_Label_Allowed(a[0], allowed);
         }},
        // As the editor creates it: by class identity.
        {label, "Prepare_Label", 1,
         [](Variant& r) {
             return automation::Bind<product::Label_Checker>(
                        automation::Create_Object(product::Label_Checker::Class_Identity))
                 ->Prepare_Label(a[0], r);
         }},
        {box, "Show_Box", 5,
         [](Variant&) {
             Long answer = 0;
             return New<product::Message_Box>()->Show_Box(a[0], a[1], a[2], a[3], a[4], answer);
         }},
    };
}

class Proxies : public testing::Test {
protected:
    Proxies() {
        Register<SR, product::SR>();
        Register<NODES, product::NODES>();
        Register<CONFIG, product::CONFIG>();
        Register<UDNODES, product::UDNODES>();
        Register<DELNODES, product::DELNODES>();
        Register<INSNODES, product::INSNODES>();
        Register<Message_Box, product::Message_Box>();
        Register<Label_Checker, product::Label_Checker>(product::Label_Checker::Class_Identity);
        passed = 0;
        plan->Trace(transcript);
    }
    ~Proxies() override {
        EXPECT_EQ(automation::Live_Objects(), objects_before);
        for (const auto& description : automation::Registered_Classes())
            automation::Revoke_Class(description.Program_Identity);
    }

    const std::int64_t objects_before = automation::Live_Objects();
    std::ostringstream printed;
    Transcript transcript{printed};
    const std::shared_ptr<Call_Plan> plan = std::make_shared<Call_Plan>();
};

std::string Expected_Line(const Caller& caller) {
    std::string line = R"({"event":"call","component":")" + std::string(caller.Component) +
                       R"(","operation":")" + caller.Operation + R"(","arguments":[)";
    for (int number = 1; number <= caller.Arguments; ++number)
        line += (number > 1 ? ",\"" : "\"") + std::to_string(number) + "\"";
    return std::string(caller.Operation) == "Show_Box" ? "" : line + "]}\n";
}

TEST_F(Proxies, Print_And_Pass_Every_Operation) {
    Install_Proxies(plan);
    const auto callers = All_Callers();
    EXPECT_EQ(callers.size(), All_Operations().size());
    for (const Caller& caller : callers) {
        SCOPED_TRACE(caller.Operation);
        printed.str({});
        passed = 0;
        Variant result;
        EXPECT_EQ(caller.Call(result), automation::Status_OK);
        EXPECT_EQ(passed, 1);
        EXPECT_EQ(printed.str(), Expected_Line(caller));
    }
}

TEST_F(Proxies, Fail_Every_Operation_Before_It_Runs) {
    const auto callers = All_Callers();
    for (const Caller& caller : callers)
        plan->Add_Failure(std::string(caller.Operation) + "@2=380:in = between:");
    Install_Proxies(plan);
    for (const Caller& caller : callers) {
        SCOPED_TRACE(caller.Operation);
        Variant result;
        EXPECT_EQ(caller.Call(result), automation::Status_OK);
        passed = 0;
        printed.str({});
        EXPECT_EQ(caller.Call(result), automation::Status_Unspecified);
        EXPECT_EQ(passed, 0);
        EXPECT_EQ(printed.str(), Expected_Line(caller));
        const auto error = automation::Take_Error();
        ASSERT_TRUE(error);
        EXPECT_EQ(automation::To_UTF8(error->Source), caller.Component);
        EXPECT_EQ(error->Number, 380);
        EXPECT_EQ(error->Description, u"in = between:");
        EXPECT_EQ(caller.Call(result), automation::Status_OK);
    }
}

TEST_F(Proxies, Choose_The_Failure_Of_A_Call) {
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
        Call_Plan chosen;
        for (const std::string& option : given.Options)
            chosen.Add_Failure(option);
        for (std::size_t call = 0; call < 3; ++call) {
            Variant result;
            automation::Take_Error();
            EXPECT_EQ(chosen.Call(u"Get_Style_Nodes", {}, &result, [&] { return Real(result); }),
                      given.Statuses[call]);
            const auto error = automation::Take_Error();
            EXPECT_EQ(error ? automation::To_UTF8(error->Description) : "", given.Descriptions[call]);
        }
    }
}

TEST_F(Proxies, Answer_From_A_File_Unless_The_Call_Fails) {
    const std::string file = testing::TempDir() + "host_test_reply.xml";
    std::ofstream(file) << "\xC3\x84\r\n";
    plan->Add_Reply("Get_Full_Detail@2=" + file);
    plan->Add_Reply("Get_Full_Detail@3=" + file);
    plan->Add_Failure("Get_Full_Detail@3");
    Install_Proxies(plan);
    const auto call = All_Callers()[2];
    Variant result;
    EXPECT_EQ(call.Call(result), 0);
    EXPECT_EQ(result.To_Text(), u"real");
    EXPECT_EQ(call.Call(result), 0);
    EXPECT_EQ(result.To_Text(), u"Ä\r\n");
    EXPECT_LT(call.Call(result), 0);
    EXPECT_EQ(passed, 1);
}

TEST_F(Proxies, Refuse_Options_That_Make_No_Sense) {
    for (const char* option :
         {"", "Get", "get_style_nodes", "Box_Error_Code", "Get_Style_Nodes@", "Get_Style_Nodes@0",
          "Get_Style_Nodes@-1", "Get_Style_Nodes@x", "Get_Style_Nodes@1@2",
          "Get_Style_Nodes=", "Get_Style_Nodes=5", "Get_Style_Nodes=x:y", "Get_Style_Nodes=:y",
          "Get_Style_Nodes=2147483648:y", "Get_Style_Nodes=1:\xFF", "\xFF"})
        EXPECT_THROW(plan->Add_Failure(option), Usage_Error) << option;
    for (const char* option : {"", "Get=f", "Get_Style_Nodes", "Get_Style_Nodes@0=f", "Update_Style_Node=f",
                               "Show_Box=f", "Prepare_Label=f", "Is_Label_Allowed=f"})
        EXPECT_THROW(plan->Add_Reply(option), Usage_Error) << option;
    for (const char* option : {"Get_Style_Nodes=/nowhere/at/all", "Get_Style_Nodes=/", "Get_Style_Nodes="})
        EXPECT_THROW(plan->Add_Reply(option), Start_Error) << option;
}

TEST_F(Proxies, Make_A_Class_Missing) {
    for (const char* name : {"zebDB.detail", "LabelChecker", "KOR_MsgBox.Busyness_Rules"})
        EXPECT_NO_THROW(Require_Known_Class(name)) << name;
    for (const char* name : {"", "ZEBdb", "Label Checker", "\xFF"})
        EXPECT_THROW(Require_Known_Class(name), Usage_Error) << name;
    Install_Proxies(plan);
    Make_Missing("labelchecker");
    try {
        automation::Create_Object(product::Label_Checker::Class_Identity);
        FAIL() << "the missing class was created";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number, 429);
    }
    EXPECT_NO_THROW(New<product::SR>());
}

TEST_F(Proxies, Leave_The_Box_Component_As_It_Is) {
    Install_Proxies(plan);
    const auto box = New<product::Message_Box>();
    Variant text;
    Long number = 0;
    EXPECT_EQ(box->Box_Error_Location(text), 0);
    EXPECT_EQ(text.To_Text(), u"real");
    EXPECT_EQ(box->Box_Error_Code(number), 0);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(box->Show_Box(u"", u"", u"", u"", u"", number), 0);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(printed.str(), "");
}

} // namespace
