// The sample data, long partitions, the label checker and the message box.
#include <map>
#include <tuple>

#include "automation/text.h"
#include "stores_test_tools.h"
#include "toolkit/headless_display.h"

namespace {

using namespace stores_test;
using automation::Check;
using automation::Long;
using automation::String;
using automation::Variant;

const std::map<std::string, std::string> Detail_Tables{
    {"1", "partial_detail"}, {"2", "full_detail"}, {"3", "dialcontinue_detail"}, {"4", "enhanced_detail"}};

TEST_P(Components, The_Sample_Is_Whole_And_Shows_Every_Type_And_Oddity) {
    std::string without_detail =
        "SELECT config_id, partition_id, node_number, supervise_id FROM style_node WHERE supervise_id <> '0'";
    for (const auto& [type, table] : Detail_Tables)
        without_detail += " EXCEPT SELECT config_id, partition_id, node_number, '" + type + "' FROM " + table;
    const std::string first = " FROM style_node WHERE config_id = 1 AND partition_id = 1";
    const std::pair<std::string, Rows> cases[] = {
        {"SELECT DISTINCT supervise_id" + first + " ORDER BY 1", {{"0"}, {"1"}, {"2"}, {"3"}, {"4"}}},
        {"SELECT min(node_number), count(*) >= 13, count(*) FILTER (WHERE node_description IS NULL)" + first,
         {{"0", "1", "1"}}},
        {"SELECT count(*)" + first + " AND node_description = '(null)'", {{"1"}}},
        {"SELECT node_number FROM style_node WHERE partition_id = 2", {{"0"}, {"3"}, {"7"}, {"9"}}},
        {"SELECT count(*), max(node_number) FROM style_node WHERE config_id = 3", {{"13", "12"}}},
        {"SELECT supervise_id FROM style_node WHERE config_id = 3 AND node_number = 12", {{"1"}}},
        {without_detail, {{"1", "1", "14", "3"}}},
        {"SELECT node_number FROM partial_detail WHERE retrieve = '(null)'", {{"8"}}},
        {"SELECT config_id, partition_id, node_number, node_description FROM style_node ORDER BY 1, 2, 3",
         SQL("SELECT config_id, partition_id, node_number, label FROM node_entry "
             "WHERE node_type_id = 5 ORDER BY 1, 2, 3")},
        {"SELECT * FROM style_node WHERE length(node_description) > 30 OR length(transfer) > 7 "
         "OR length(disconnection) > 7 OR CAST(hookflash AS INTEGER) NOT BETWEEN 500 AND 800 "
         "OR threshold_type_id NOT IN (SELECT threshold_type_id FROM threshold_type)",
         {}},
        {"SELECT language_1, language_2 FROM node_type WHERE id = '5'", {{"STYLE", "STIL"}}},
        {"SELECT count(*) >= 8, count(*) FILTER (WHERE threshold_type_id = '7') FROM threshold_type",
         {{"1", "1"}}}};
    for (const auto& [sql, expected] : cases)
        EXPECT_EQ(SQL(sql), expected) << sql;
}

TEST_P(Components, A_Partition_Holds_The_Default_Node_And_Every_Number) {
    const std::string first = " WHERE config_id = 1 AND partition_id = 1";
    const Store_Place empty(GetParam()), full(GetParam());
    stores::Store::Create(empty.URL, 0);
    EXPECT_EQ(empty.SQL("SELECT node_number FROM style_node" + first), (Rows{{"0"}}));
    const int most = GetParam() == Kind::File ? stores::Most_Nodes : 2000;
    Use(stores::Store::Create(full.URL, most));
    nodes = Created<interfaces::NODES>();
    const Rows answer = Style_Nodes(u"1", u"1");
    ASSERT_EQ(answer.size(), static_cast<std::size_t>(most) + 2) << "with the fields";
    std::map<std::string, int> types;
    for (std::size_t number = 0; number + 1 < answer.size(); ++number) {
        ASSERT_EQ(answer[number + 1][0], std::to_string(number));
        ++types[answer[number + 1][2]];
    }
    EXPECT_GT(types["0"], most / 6);
    for (const auto& [type, table] : Detail_Tables) {
        EXPECT_GT(types[type], most / 6) << type;
        const Rows details = full.SQL("SELECT count(*) FROM " + table + first);
        EXPECT_EQ(details, (Rows{{std::to_string(types[type])}})) << type;
    }
}

TEST_P(Components, Labels_With_The_Wrong_Quotes_Are_Refused) {
    const auto checker = automation::Bind<interfaces::Label_Checker>(
        automation::Create_Object(interfaces::Label_Checker::Class_Identity));
    const std::pair<automation::String_View, bool> cases[] = {
        {u"", true},      {u"plain", true},         {u"it's", true},   {u"'a' 'b'", true},
        {u"' '", true},   {u"\u201Cx\u201D", true}, {u"(null)", true}, {u"\"", false},
        {u"a\"b", false}, {u"''", false},           {u"a''b", false},  {u"'''", false}};
    Automation_Boolean allowed = AUTOMATION_FALSE;
    Variant prepared;
    for (const auto& [label, expected] : cases) {
        Check(checker->Is_Label_Allowed(label, allowed));
        EXPECT_EQ(allowed != AUTOMATION_FALSE, expected) << automation::To_UTF8(label);
        Check(checker->Prepare_Label(label, prepared));
        EXPECT_EQ(prepared.Text(), label) << automation::To_UTF8(label);
    }
    EXPECT_EQ(Failure_Of(checker->Is_Label_Allowed(Variant::Null(), allowed)), "LabelChecker 94");
}

class Box_Display final : public toolkit::Headless_Display {
public:
    Box_Display() { toolkit::Set_Display(this); }
    ~Box_Display() override { toolkit::Set_Display(nullptr); }
    void Run_Modal(toolkit::Form&) override {}
    Long Show_Message(const toolkit::Message& message) override {
        Shown.push_back(message);
        return Answer;
    }

    std::vector<toolkit::Message> Shown;
    Long Answer = 1;
};

class Box : public Components {
protected:
    std::tuple<String, Long, String> Error() {
        automation::Text location, description;
        Long code = 99;
        Check(box->Box_Error_Location(location));
        Check(box->Box_Error_Code(code));
        Check(box->Box_Error_Description(description));
        return {String(location.View()), code, String(description.View())};
    }

    const automation::Reference<interfaces::Message_Box> box = Created<interfaces::Message_Box>();
    Box_Display display;
    Long answer = 0;
};

INSTANTIATE_TEST_SUITE_P(On_A, Box, testing::Values(Kind::File), Name_Of_Kind);

TEST_P(Box, Shows_What_It_Is_Given_Or_Says_Why_Not) {
    display.Answer = 3;
    Check(box->Show_Box(automation::Integer{2}, u"Save?", Long{1}, Long{3}, u"Confirmation", answer));
    EXPECT_EQ(answer, 3);
    ASSERT_EQ(display.Shown.size(), 1U);
    const toolkit::Message& shown = display.Shown[0];
    EXPECT_TRUE(shown.By_Product);
    EXPECT_EQ(std::tuple(shown.Language, shown.Text, shown.Kind, shown.Buttons, shown.Title),
              std::tuple(2, u"Save?", 1, 3, u"Confirmation"));
    EXPECT_EQ(Error(), std::tuple(u"", 0, u""));
    display.Answer = -1;
    for (toolkit::Display* shown_by : {&display, static_cast<Box_Display*>(nullptr)}) {
        toolkit::Set_Display(shown_by);
        Check(box->Show_Box(Long{1}, u"text", Long{3}, Long{1}, u"title", answer));
        EXPECT_EQ(std::exchange(answer, 0), -1);
        EXPECT_EQ(Error(), std::tuple(u"KOR_MsgBox", -2147467259, u"The message box could not be shown"));
    }
}

TEST_P(Box, Refuses_Arguments_Of_The_Wrong_Type) {
    const Variant good(Long{1});
    for (const auto& [bad, number] : {std::pair(Variant(u"x"), "13"), std::pair(Variant::Null(), "94")}) {
        const std::string failure = std::string("KOR_MsgBox.Busyness_Rules ") + number;
        EXPECT_EQ(Failure_Of(box->Show_Box(bad, u"t", good, good, u"t", answer)), failure);
        EXPECT_EQ(Failure_Of(box->Show_Box(good, u"t", bad, good, u"t", answer)), failure);
        EXPECT_EQ(Failure_Of(box->Show_Box(good, u"t", good, bad, u"t", answer)), failure);
    }
    EXPECT_TRUE(display.Shown.empty());
}

} // namespace
