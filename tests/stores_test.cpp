// The components on a store, through their interfaces: what they answer, what they write, how they fail.
#include <array>

#include "automation/text.h"
#include "stores_test_tools.h"

namespace {

using namespace stores_test;
using automation::Check;
using automation::Long;
using automation::Status;
using automation::Variant;
using interfaces::DELNODES;
using interfaces::INSNODES;
using interfaces::NODES;

INSTANTIATE_TEST_SUITE_P(On_A, Components, Both_Kinds, Name_Of_Kind);

// The four kinds of detail record, each with its operations and the table behind them.
using Text = const Variant&;
struct Detail_Kind {
    std::string Table;
    Status (NODES::*Get)(Text, Text, Text, Variant&);
    Status (DELNODES::*Delete)(Text, Text, Text);
    Status (INSNODES::*Insert)(Text, Text, Text, Text, Text, Text, Text, Text, Text, Text, Text, Text);
    const char *First_Busy = "BusyOn", *Second_Busy = "BusyOff";
};

const std::array<Detail_Kind, 4> Detail_Kinds{{
    {"partial_detail", &NODES::Get_Partial_Detail, &DELNODES::Delete_Partial_Detail,
     &INSNODES::Insert_Partial_Detail},
    {"full_detail", &NODES::Get_Full_Detail, &DELNODES::Delete_Full_Detail, &INSNODES::Insert_Full_Detail},
    {"dialcontinue_detail", &NODES::Get_DialContinue_Detail, &DELNODES::Delete_DialContinue_Detail,
     &INSNODES::Insert_DialContinue_Detail},
    {"enhanced_detail", &NODES::Get_Enhanced_Detail, &DELNODES::Delete_Enhanced_Detail,
     &INSNODES::Insert_Enhanced_Detail, "Busy1On", "Busy2On"},
}};

Status Insert(INSNODES& to, const Detail_Kind& kind, Text node, Text retrieve = u"!") {
    return (to.*kind.Insert)(u"1", u"2", node, u"t", retrieve, u"a", u"b", u"c", u"d", u"e", u"f", u"g");
}

Rows Detail_Of(NODES& nodes, const Detail_Kind& kind) {
    Variant xml;
    Check((nodes.*kind.Get)(u"1", u"2", u"50", xml));
    return Parsed(xml);
}

TEST_P(Components, Nodes_Come_In_Ascending_Order_Behind_The_Default_Node_As_They_Stand) {
    SQL("DELETE FROM style_node WHERE config_id = 1 AND partition_id = 2;"
        "INSERT INTO style_node (config_id, partition_id, node_number, node_description, supervise_id, "
        "hookflash, threshold_type_id, transfer, disconnection) VALUES "
        "(1, 2, 32767, '', '', '', '', '', ''), (1, 2, 0, '', '', '', '', '', ''), "
        "(1, 2, 10, 'a<b>&\"c\" ''d'' \u00e9\U0001F600', '-1', '1.5', '', '  ! ', '\tx\n'), "
        "(1, 2, -5, NULL, NULL, NULL, NULL, NULL, NULL), "
        "(1, 2, 2, '(null)', '9', 'soon', 'x', '(null)', '')");
    EXPECT_EQ(Style_Nodes(u"1", u"2"),
              (Rows{{"NodeNumber", "NodeDescription", "SuperviseID", "Hookflash", "ThresholdTypeID",
                     "Transfer", "Disconnection"},
                    {"0", "", "", "", "", "", ""},
                    {"-5", "<null>", "<null>", "<null>", "<null>", "<null>", "<null>"},
                    {"2", "(null)", "9", "soon", "x", "(null)", ""},
                    {"10", "a<b>&\"c\" 'd' \u00e9\U0001F600", "-1", "1.5", "", "  ! ", "\tx\n"},
                    {"32767", "", "", "", "", "", ""}}));
    EXPECT_EQ(Style_Nodes(u"2", u"1").size(), 1U) << "the fields alone";
}

TEST_P(Components, A_Text_That_Is_Not_UTF8_Fails_The_Read_And_A_NUL_In_One_Too) {
    if (place.Where == Kind::Server)
        return; // which takes neither
    const auto read_with = [&](const std::string& blob) {
        SQL("UPDATE style_node SET transfer = CAST(x'" + blob + "' AS TEXT) WHERE node_number = 12");
        automation::Variant xml;
        return Failure_Of(nodes->Get_Style_Nodes(u"1", u"1", xml));
    };
    EXPECT_EQ(read_with("C3A4"), "");
    EXPECT_EQ(read_with("41FF"), "ZEBdb.NODES -2147467259");
    EXPECT_EQ(read_with("EDA080"), "ZEBdb.NODES -2147467259");
    EXPECT_EQ(read_with("410042"), "ZEBdb.NODES -2147467259");
}

TEST_P(Components, Lists_Keep_Their_Own_Order_And_Odd_Rows) {
    SQL("DELETE FROM node_type; DELETE FROM threshold_type;"
        "INSERT INTO node_type VALUES (3, '5', 'A', 'B'), (1, NULL, 'C', NULL), (2, '5', NULL, 'D');"
        "INSERT INTO threshold_type VALUES (2, '7', 'E', 'F'), (1, 'x', NULL, 'G')");
    const auto lists = Created<interfaces::SR>();
    Variant types, thresholds;
    Check(lists->Get_All_Node_Types(types));
    Check(lists->Get_All_Threshold_Types(thresholds));
    EXPECT_EQ(Parsed(types), (Rows{{"ID", "Language1", "Language2"},
                                   {"<null>", "C", "<null>"},
                                   {"5", "<null>", "D"},
                                   {"5", "A", "B"}}));
    EXPECT_EQ(Parsed(thresholds),
              (Rows{{"ThresholdTypeID", "Language1", "Language2"}, {"x", "<null>", "G"}, {"7", "E", "F"}}));
}

TEST_P(Components, The_Configuration_Has_Numbers_Where_The_Log_Wants_Them) {
    Variant answer;
    Check(Created<interfaces::CONFIG>()->Get_Configuration_Info(answer));
    ASSERT_EQ(Parsed(answer).size(), 2U);
    for (const std::size_t position : {1U, 3U, 5U})
        EXPECT_NO_THROW(Variant(*automation::From_UTF8(Parsed(answer)[1].at(position))).To_Integer())
            << position;
}

TEST_P(Components, Updates_Put_Every_Argument_In_Its_Place) {
    const std::string rest = " WHERE NOT (config_id = 1 AND partition_id = 2 AND node_number = 7);";
    const std::string others = "SELECT * FROM style_node" + rest + "SELECT * FROM node_entry" + rest;
    const Rows before = SQL(others);
    const char16_t* label = u"  \u00dcber \"all\" '' \xD83D\xDE00 \t; DROP TABLE style_node";
    Check(updater->Update_Style_Node(u"1", u"2", u"7", u"flash", u"threshold", u"transfer", u"disconnect",
                                     u"caption", u"3", label));
    Check(updater->Update_Node_Entry(u"label", u"now", u"1", u"2", u"5", u"7"));
    EXPECT_EQ(Style_Nodes(u"1", u"2").at(3),
              (Row{"7", automation::To_UTF8(label), "3", "flash", "threshold", "transfer", "disconnect"}));
    Check(updater->Update_Style_Node(u"1", u"1", u"99", u"", u"", u"", u"", u"", u"", u""));
    Check(updater->Update_Node_Entry(u"other type", u"never", u"1", u"2", u"6", u"7"));
    const std::string changed = " WHERE config_id = 1 AND partition_id = 2 AND node_number = 7;";
    EXPECT_EQ(SQL("SELECT supervise_caption FROM style_node" + changed +
                  "SELECT node_type_id, label, changed FROM node_entry" + changed),
              (Rows{{"caption"}, {"5", "label", "now"}}));
    EXPECT_EQ(SQL(others), before);
}

TEST_P(Components, Each_Detail_Goes_To_Its_Own_Table_Once_And_Back) {
    for (const Detail_Kind& kind : Detail_Kinds) {
        SCOPED_TRACE(kind.Table);
        const Rows others = SQL("SELECT * FROM " + kind.Table);
        Check(Insert(*inserter, kind, u"50"));
        EXPECT_EQ(Failure_Of(Insert(*inserter, kind, u"50", u"second")), "ZEBins.INSNODES -2147467259");
        EXPECT_EQ(Detail_Of(*nodes, kind), (Rows{{"Retrieve", "BusyRetry", "NumberRetries", "RingLimit",
                                                  kind.First_Busy, kind.Second_Busy, "RingOn", "RingOff"},
                                                 {"!", "a", "b", "c", "d", "e", "f", "g"}}));
        const std::string keys = "SELECT config_id, partition_id, supervise_id FROM " + kind.Table;
        EXPECT_EQ(SQL(keys + " WHERE node_number = 50"), (Rows{{"1", "2", "t"}}));
        for (const Detail_Kind& other : Detail_Kinds)
            EXPECT_EQ(Detail_Of(*nodes, other).size(), &other == &kind ? 2U : 1U) << other.Table;
        Check(Insert(*inserter, kind, u"51"));
        for (const char16_t* node : {u"50", u"51", u"99"}) // the last is not there
            Check(((*deleter).*kind.Delete)(u"1", u"2", node));
        EXPECT_EQ(SQL("SELECT * FROM " + kind.Table), others);
    }
}

TEST_P(Components, Keys_Are_Decimal_Integers_Of_16_Bits) {
    const std::pair<Variant, Long> cases[] = {
        {u"0", 0},         {u"-32768", 0},  {u"32767", 0},  {Long{7}, 0},    {u"32768", 6},
        {u"-40000", 6},    {u"", 13},       {u"x", 13},     {u"1.0", 13},    {u" 1", 13},
        {u"1 OR 1=1", 13}, {u"99999x", 13}, {u"1,000", 13}, {Variant(), 13}, {Variant::Null(), 94}};
    for (const auto& [key, number] : cases) {
        Variant xml;
        const Row failures{Failure_Of(nodes->Get_Style_Nodes(u"1", key, xml)),
                           Failure_Of(nodes->Get_Full_Detail(u"1", u"1", key, xml)),
                           Failure_Of(updater->Update_Node_Entry(u"", u"", u"1", u"60", key, u"1")),
                           Failure_Of(deleter->Delete_Enhanced_Detail(u"60", key, u"1")),
                           Failure_Of(Insert(*inserter, Detail_Kinds[0], key))};
        Row expected{"ZEBdb.NODES", "ZEBdb.NODES", "ZEBud.UDNODES", "ZEBdel.DELNODES", "ZEBins.INSNODES"};
        for (std::string& failure : expected)
            failure = number == 0 ? "" : failure + " " + std::to_string(number);
        EXPECT_EQ(failures, expected) << (key.Is_Null() ? "null" : automation::To_UTF8(key.To_Text()));
    }
}

} // namespace
