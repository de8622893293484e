// The three dial strings and the label, as a person types, pastes and inserts into them.
#include <gtest/gtest.h>

#include "field_rows.h"

namespace {

using Names = std::vector<std::string>;
using Rows = std::vector<Field_Row>;

const Names Dial_Strings = Words("txtTransfer txtDisconnect txtRetrieve");
const Names Label{"txtDescription"};

} // namespace

TEST(Dial_String, Takes_The_Keys_Of_A_Telephone) {
    Expect_Rows(Dial_Strings, {
                                  {"paste $ \"\"|type $ 9,,123#", "9,,123#"},
                                  {"paste $ \"\"|type $ 9,,123#|type $ 4", "9,,123#"},
                                  {"paste $ \"\"|type $ 12|type $ -", "12-"},
                                  {"paste $ \"\"|type $ 12-3", "12-3"},
                                  {"paste $ \"\"|type $ 1A2", "12"},
                                  {"paste $ 12|insert $ 1 A", "1A2"},
                                  {"backspace $ 9", ""},
                                  {"paste $ \"   \"", ""},
                                  {"paste $ \"  1,2  \"", "1,2"},
                                  Refused("type $ \" \""),
                                  Refused("insert $ 0 \"  \""),
                                  Refused("paste $ @"),
                                  {"paste $ \"\"|focus cmbHookFlash", ""}, // nothing happens when it is left
                              });
}

TEST(Dial_String, Judges_Numbers_As_A_Whole_And_Other_Texts_By_Their_Last_Character) {
    Names good =
        Words("0 7 1234567 !! * , # #*,! 12- 12+ -5 +5 1,234 12, 1.5 .5 1e3 5-5 --5 A1 ABCD# 1A2 1.2.3 é1 ש1 "
              "1😀2 x! \u200F1 -.5-1");
    good.insert(good.end(), {"12 3", "\t1", "1\t2", "1\n2", std::string("1\0002", 3)});
    Names bad =
        Words("A B C D a 12A #A - + . -- 5-5- 1.5. 1.. 12. 1,. -5. 0. 1e é 1é ٣ 1３ ½ 😀 1😀 ש 1ש (1) !- #+ "
              "*. 1\u200F");
    bad.insert(bad.end(), {"\t", "12\t", "1\n", "1 -", std::string("\0", 1), std::string("12\0", 3)});
    Rows rows;
    for (const std::string& text : good)
        rows.push_back({Paste(text), text});
    for (const std::string& text : bad)
        rows.push_back(Refused(Paste(text)));
    Expect_Rows(Dial_Strings, rows);
}

TEST(Dial_String, Puts_The_Accepted_Text_Back_With_The_Caret_At_Its_End) {
    Rows rows;
    for (const char key : std::string("ABCDxyz().:/&"))
        rows.push_back({std::string("paste $ 123|type $ ") + key, "123"});
    for (const std::string act : {"paste $ A", "paste $ 1.", "insert $ 3 .", "paste $ 12345678"})
        rows.push_back({"paste $ 123|" + act, "123"});
    rows.push_back({"paste $ 1234567|insert $ 2 8", "1234567"});
    rows.push_back({"paste $ \" 1234567 \"|insert $ 0 A", "1234567"});
    rows.push_back({"paste $ 1.5|backspace $|type $ 6", "1.56"}); // 1. is refused: 1.5 comes back
    rows.push_back(Refused("paste $ \"1234567 8\""));
    for (const std::size_t length : {32000U, 32767U})
        for (const char character : {'1', 'A'})
            rows.push_back(Refused(Paste(Repeated(length, character))));
    Expect_Rows(Dial_Strings, rows);
}

TEST(Dial_String, Reports_An_Overflow_And_Stays_Open_Until_The_Next_Move_Or_Save) {
    Editor_Session session;
    for (const std::string& field : Dial_Strings)
        for (const std::string then : {"close", "click cmdNext", "click cmdFirst", "pick cmbNode 0",
                                       "paste $ 5|click cmdApply", "paste $ 6|key Enter"}) {
            SCOPED_TRACE(field + " " + then);
            const std::string endless = Repeated(then == "close" ? 32768 : 40000, '1');
            const std::string acts =
                "show $|" + Paste(endless) + "|show form|show $ cmdApply|paste $ A|show $|";
            const Lines lines =
                session.Play("shown 1 1 12\n" + Script_Lines(acts + then + "|show form", field));
            EXPECT_TRUE(Only(lines, "form").at(0).at("visible"));
            const Lines controls = Only(lines, "control");
            ASSERT_EQ(controls.size(), 4U);
            EXPECT_EQ(controls[1].at("text"), endless);
            EXPECT_FALSE(controls[2].at("enabled"));
            EXPECT_EQ(controls[3].at("text"), controls[0].at("text"));
            EXPECT_FALSE(Only(lines, "form").at(1).at("loaded"));
            EXPECT_TRUE(Only(lines, "refused").empty() && Only(lines, "box").empty());
            const Line result = Only(lines, "result").at(0);
            EXPECT_EQ(result.at("ErrLocation"), "[KOR_STYLE_Node][dlgGUI]" + field + "_Change");
            EXPECT_TRUE(result.at("ErrCode") == 6 && result.at("ErrDescription") == "Overflow");
            EXPECT_FALSE(result.at("shown"));
        }
}

TEST(Label, Takes_Thirty_Characters_Of_Any_Kind) {
    const std::string thirty = "123456789 123456789 123456789 ";
    const std::string pairs = "😀😀😀😀😀😀😀😀😀😀😀😀😀😀😀"; // two code units each
    Rows rows;
    for (const std::string& text :
         {thirty, pairs, std::string("  x  "), std::string("   "), std::string("\"'' ''\""),
          std::string("\t"), std::string("שלום"), std::string("a\u202Eb"), std::string("a\0b", 3),
          std::string("1\n2"), Repeated(30, '\'')})
        rows.push_back({Paste(text), text});
    for (const std::string& text : {thirty + "x", pairs + "x", pairs + "😀", Repeated(32000, 'x'),
                                    Repeated(40000, 'x'), Repeated(40000, ' ')})
        rows.push_back(Refused(Paste(text)));
    rows.push_back({"paste $ \"\"", ""});
    rows.push_back(Refused("paste $ \"@\""));
    // An accepted edit leaves the caret where it is.
    rows.push_back({"insert $ 0 X", "XSecond-level support", 1});
    rows.push_back({"insert $ 0 \" \"", " Second-level support", 1});
    rows.push_back({Paste(thirty) + "|insert $ 3 X", thirty});
    rows.push_back({Paste(thirty) + "|type $ XYZ", thirty});
    rows.push_back({"paste $ \"\"|type $ \"" + thirty + "XYZ\"", thirty});
    rows.push_back({Paste(pairs) + "|backspace $ 14", "😀"});
    rows.push_back({Paste("x" + pairs.substr(4)) + "|type $ 😀", "x" + pairs.substr(4)}); // 29 and 2 units
    rows.push_back({"paste $ x|backspace $|focus cmbHookFlash", "", 0});
    Expect_Rows(Label, rows);
}

TEST(Every_Field, A_Refused_Edit_Changes_Nothing_Else) {
    Names bad = Words("-A . 1e999 😀 שלום");
    bad.insert(bad.end(), {"\t", std::string("\0", 1), Repeated(32000, '9'), Repeated(32000, '(')});
    Editor_Session session;
    for (const std::string& field :
         Words("cmbHookFlash cmbBusyOn cmbBusyOff cmbRingOn cmbRingOff cmbBusyRetry "
               "cmbNumRetries cmbRingLimit txtTransfer txtDisconnect txtRetrieve")) {
        std::string script = "shown 1 1 12\nshow\n";
        for (const std::string& text : bad) // 1e999 ends in a digit: a dial string takes it
            if (text != "1e999" || !field.starts_with("txt"))
                script += Script_Lines(Paste(text), field) + "show\n";
        const Lines lines = session.Play(script + "close");
        Lines controls = Only(lines, "control");
        ASSERT_GE(controls.size(), 44U * 9) << field;
        for (std::size_t index = 0; index < controls.size(); ++index) {
            controls[index].erase("caret");
            EXPECT_EQ(controls[index], controls[index % 44]) << field;
        }
        EXPECT_TRUE(Only(lines, "result").at(0).at("shown")) << field;
    }
}
