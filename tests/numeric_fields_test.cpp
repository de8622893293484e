// The eight numeric fields, as a person meets them: typed, pasted, inserted into, picked and left.
#include <algorithm>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "field_rows.h"

namespace {

using Names = std::vector<std::string>;
using Rows = std::vector<Field_Row>;

const Names Busy = Words("cmbBusyOn cmbBusyOff");
const Names Of_Four = Words("cmbHookFlash cmbBusyOn cmbBusyOff"); // opened with 500
const Names Of_Five = Words("cmbRingOn cmbRingOff");              // opened with 2000 and 4000
const Names Milliseconds = Words("cmbHookFlash cmbBusyOn cmbBusyOff cmbRingOn cmbRingOff");
const Names Counts = Words("cmbBusyRetry cmbNumRetries cmbRingLimit"); // opened with 4, 3 and 5
const Names All =
    Words("cmbHookFlash cmbBusyOn cmbBusyOff cmbRingOn cmbRingOff cmbBusyRetry cmbNumRetries cmbRingLimit");

int Length(const std::string& utf8) {
    return static_cast<int>(automation::From_UTF8(utf8).value().size());
}

Rows Kept(std::string_view words) {
    Rows rows;
    for (const std::string& text : Words(words))
        rows.push_back({Paste(text), text});
    return rows;
}

} // namespace

TEST(Numeric_Field, Takes_Digits_And_Removes_Spaces) {
    Expect_Rows(All, {{"backspace $ 9", ""},
                      {"backspace $ 9|type $ 7", "7"},
                      {"paste $ \"\"", ""},
                      {"paste $ \"   \"", ""},
                      {"paste $ \"  12   \"", "12"},
                      {"paste $ 2|insert $ 0 1", "12"},
                      Refused("type $ \" \""),
                      Refused("insert $ 0 \" \""),
                      Refused("paste $ \"  @  \""),
                      Refused("paste $ @")});
    Expect_Rows(Milliseconds, {{"backspace $ 9|type $ 75", "75"}}); // no value of the list
}

TEST(Numeric_Field, Refuses_What_Is_Too_Long) {
    Expect_Rows(Of_Four, {Refused("paste $ 12345"),
                          Refused("paste $ abcdef"),
                          Refused("paste $ \" 12345 \""),
                          {"paste $ 1000|type $ 1", "1000"},
                          {"paste $ 1000|insert $ 1 5", "1000"}});
    Expect_Rows(Of_Five, {Refused("paste $ 123456"),
                          {"paste $ 10000|type $ 1", "10000"},
                          {"paste $ 10000|insert $ 0 1", "10000"}});
    Expect_Rows(Counts, {Refused("paste $ 123"),
                         {"paste $ 10|type $ 5", "10"},
                         {"paste $ 12|insert $ 1 \" \"", "12"},
                         {"paste $ 12|type $ .", "12"}});
    Rows endless{{Paste(Repeated(40000, ' ') + "12"), "12"}, {Paste(Repeated(40000, ' ')), ""}};
    for (const std::size_t length : {32000U, 32767U})
        for (const char character : {'1', 'x', '.'})
            endless.push_back(Refused(Paste(Repeated(length, character))));
    Expect_Rows(Words("cmbHookFlash cmbRingOff cmbBusyRetry"), endless);
}

TEST(Numeric_Field, Refuses_What_Is_No_Number_And_Puts_The_Caret_Behind_As_Many_Characters) {
    Names bad =
        Words("- + . , -- -. +-1 --5 5-5 -5- -5+ 1.. 1.2. 1e 1e+ 1e- e1 e .e1 ,1 .,1 1.,2 1.2, 3e4, a 12a "
              "a12 0x1 &H1 1d2 ½ ٣ ３ 😀 1😀 inf nan 1_0 שלום 1'0 \u22125 \u200F5 (5) 5%");
    for (const std::string text : {"1 2", "- 5", "\t", "12\t", "\t12", "1\n"})
        bad.push_back(text);
    bad.push_back(std::string("\0", 1));
    bad.push_back(std::string("1\0", 2));
    Rows rows;
    for (const std::string& text : bad)
        rows.push_back({Paste(text), "@", std::min(Length(text), 3), Unmarked});
    for (const std::string act : {"type $ x", "type $ xyz", "insert $ 0 x", "insert $ 1 \" \""})
        rows.push_back(Refused(act));      // four characters, the fourth place is behind the end
    rows.push_back(Refused(Paste("ab "))); // the outer run, which removed the space, places the caret last
    rows.push_back(Refused(Paste(" a")));
    rows.push_back({"paste $ 1000|paste $ x", "1000", 1});
    rows.push_back({"paste $ 12|type $ x", "12"});
    Expect_Rows(Of_Four, rows);
    Expect_Rows(Of_Five, {{"paste $ abc", "@", 3, Unmarked},
                          {"paste $ 10000|paste $ 1x", "10000", 2},
                          {"paste $ abcd", "@", 4, Unmarked},
                          {"insert $ 1 \" \"", "@", 4, Unmarked}});
}

TEST(Numeric_Field, Refuses_What_Is_No_Count_And_Puts_The_Caret_At_The_End) {
    Names bad = Words("- + . , -- -. ,1 a 1a a1 1e e1 ½ ٣ ３ 😀 ש");
    bad.insert(bad.end(), {"\t", "1\t", std::string("\0", 1)});
    Rows rows{Refused("insert $ 0 x"), Refused("paste $ a")};
    for (const std::string& text : bad)
        rows.push_back({"paste $ 10|" + Paste(text), "10"});
    Expect_Rows(Counts, rows);
}

TEST(Numeric_Field, Keeps_Every_Number_As_It_Is_Written) {
    Expect_Rows(Milliseconds,
                Kept("0 00 05 -5 +5 .5 0.5 -.5 60.5 1,2 1,23 1e3 1E3 5e1 1e+2 1e-2 1.e1 -0 -1e4 -999 "
                     "1e-9 49.5"));
    Expect_Rows(Milliseconds, {{"paste $ 5|insert $ 0 -", "-5"},
                               {"paste $ 605|insert $ 2 .", "60.5"},
                               {"paste $ 13|insert $ 1 e", "1e3"}});
    Expect_Rows(Of_Five, Kept("1,000 99.99 -1e-9 -1e9 -2e9"));
    Expect_Rows(Busy, Kept("-1e9 -2e9")); // the hook flash is 16 bits wide
    Expect_Rows(Counts, Kept("0 1 9 10 00 05 -5 +5 .5 -0 20"));
    Expect_Rows(Counts, {{"paste $ 5|insert $ 0 -", "-5"}});
}

TEST(Numeric_Field, Is_Capped_At_Its_Upper_Bound) {
    struct Cap {
        Names Fields;
        std::string Too_Large, Bound;
    };
    for (const Cap& cap : {Cap{{"cmbHookFlash"}, "2001 2500 9999 3e3 32e3 9e3+", "2000"},
                           Cap{Busy, "1501 1600 9999 2e3 1e5 2e9 9e8+", "1500"},
                           Cap{Of_Five, "10001 12000 99999 2e4 1e5 2e9 1e9+", "10000"},
                           Cap{{"cmbBusyRetry", "cmbNumRetries"}, "31 45 99", "30"},
                           Cap{{"cmbRingLimit"}, "21 25 99", "20"}}) {
        Rows rows = Kept(cap.Bound);
        for (const std::string& text : Words(cap.Too_Large)) {
            rows.push_back({Paste(text), cap.Bound});
            rows.push_back(
                {Paste(text) + "|paste $ \"\"|backspace $|" + Paste(text) + "|type $ x", cap.Bound});
        }
        rows.push_back({"backspace $ 9|type $ " + Words(cap.Too_Large)[1], cap.Bound}); // key by key
        Expect_Rows(cap.Fields, rows);
    }
}

TEST(Numeric_Field, Is_Reset_By_A_Sign_Or_Separator_At_The_End) {
    Rows milliseconds{{"paste $ 1e2-", "50"}, {"paste $ 9e3-", "50"}, {"paste $ 15.|type $ x", "50"}};
    Rows counts;
    for (const std::string sign : {"+", "-", ",", "."}) {
        milliseconds.push_back({"paste $ 15|type $ " + sign, "50"});
        milliseconds.push_back({Paste("15" + sign), "50"});
        milliseconds.push_back({Paste(" 999" + sign + " "), "50"});
        counts.push_back({"type $ " + sign, "1"});
        counts.push_back({Paste("9" + sign), "1"});
    }
    Expect_Rows(Milliseconds, milliseconds);
    Expect_Rows(Counts, counts);
}

TEST(Numeric_Field, Is_Raised_To_Its_Minimum_When_It_Is_Left) {
    auto left = [](std::string_view raised, const std::string& minimum, std::string_view kept) {
        const std::string leave = "|focus txtDescription";
        Rows rows{Refused("focus $" + leave), {"paste $ \"\"" + leave, minimum}};
        for (const std::string& text : Words(raised))
            rows.push_back({Paste(text) + leave, minimum});
        for (const std::string& text : Words(kept))
            rows.push_back({Paste(text) + leave, text});
        return rows;
    };
    Expect_Rows(Milliseconds,
                left("0 30 49 49.4 -5 +5 .5 1e1 -999 -3e4 1e-9", "50", "50 49.5 50.5 75 +75 5e1 1,23 1500"));
    Expect_Rows(Words("cmbBusyOn cmbBusyOff cmbRingOff"), left("-1e9 -2e9", "50", "")); // 32 bits wide
    Expect_Rows(Counts, left("0 00 05 -3 +5 .5 -0", "1", "1 2 9 10 20"));
    for (const std::string leave :
         {"key Tab", "click optFull", "pick cmbThreshold 0", "type txtDescription x"})
        Expect_Rows(Words("cmbHookFlash cmbRingOff"), {{"paste $ 30|" + leave, "50"}});
}

TEST(Numeric_Field, Marks_But_Does_Not_Remember_A_Pick) {
    Expect_Rows(Milliseconds, {{"pick $ 9", "500"},
                               {"pick $ 0|focus txtDescription", "50"},
                               {"pick $ 9|type $ x|paste $ x", "@", 1}});
    Expect_Rows(Counts, {{"pick $ 9", "10"}, {"pick $ 9|type $ x", "@"}});
    Expect_Rows(All, {{"pick $ 9|paste $ 123456", "@"}}); // the text accepted before the pick

    // Once the pick is saved, the text accepted before it is no news.
    const Names opened_with = Words("500 500 500 2000 4000 4 3 5");
    Editor_Session session;
    std::string script = "shown 1 1 12\npick cmbThreshold 2\nshow cmdApply\n";
    for (std::size_t index = 0; index < All.size(); ++index)
        script += Script_Lines("pick $ 12|click cmdApply|show $|paste $ @|show cmdApply", All[index],
                               opened_with[index]);
    const Lines lines = session.Play(script + "close");
    EXPECT_TRUE(Only(lines, "refused").empty() && Only(lines, "box").empty());
    const Lines controls = Only(lines, "control");
    ASSERT_EQ(controls.size(), 1 + 2 * All.size());
    EXPECT_TRUE(controls[0].at("enabled")) << "a threshold pick marks as well";
    for (std::size_t index = 0; index < All.size(); ++index) {
        EXPECT_EQ(controls[2 * index + 1].at("index"), 12) << All[index];
        EXPECT_FALSE(controls[2 * index + 2].at("enabled")) << All[index];
    }
}

TEST(Numeric_Field, Closes_The_Dialog_When_A_Value_Or_A_Length_Overflows) {
    std::vector<std::pair<std::string, std::string>> cases; // the handler, what runs it
    auto add = [&cases](const std::string& field, const std::string& event, const std::string& acts) {
        cases.emplace_back(field + event, Script_Lines(acts, field));
    };
    for (const std::string leave : {"focus txtDescription", "key Tab", "click cmdOK"}) // asks: it was marked
        add("cmbRingOn", "_LostFocus", "paste $ -4e4|answer discard|" + leave);
    for (const std::string& text : Words("9e99 1e5 33e3 -9e9 -1e9 -4e4"))
        add("cmbHookFlash", "_Change", Paste(text));
    for (const std::string& field : Words("cmbBusyOn cmbBusyOff cmbRingOn cmbRingOff"))
        for (const std::string& text : Words("9e99 3e9 -3e9"))
            add(field, "_Change", Paste(text));
    for (const std::string& field : All)
        for (const std::string& text : {Repeated(32768, '1'), Repeated(40000, 'x')})
            add(field, "_Change", Paste(text));

    std::string script;
    for (const auto& overflow : cases)
        script += "shown 1 1 12\n" + overflow.second + "show form\n";
    Editor_Session session;
    const Lines lines = session.Play(script);
    const Lines results = Only(lines, "result");
    ASSERT_EQ(results.size(), cases.size()) << session.Errors();
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const auto& [handler, acts] = cases[index];
        EXPECT_EQ(results[index].at("ErrLocation"), "[KOR_STYLE_Node][dlgGUI]" + handler);
        EXPECT_EQ(results[index].at("ErrCode"), 6) << handler << acts.substr(0, 60);
        EXPECT_EQ(results[index].at("ErrDescription"), "Overflow") << handler << acts.substr(0, 60);
        EXPECT_FALSE(results[index].at("shown")) << handler << acts.substr(0, 60);
    }
    for (const Line& form : Only(lines, "form"))
        EXPECT_FALSE(form.at("loaded"));
    EXPECT_EQ(Only(lines, "box").size(), 3U);
}

TEST(Numeric_Field, Asks_Before_An_Overflow_Drops_Changes) {
    const std::string location = "[KOR_STYLE_Node][dlgGUI]cmbHookFlash_";
    const std::string overflow = "shown 1 1 12\npaste txtDescription New\nanswer ";
    const std::string then = "\npaste cmbHookFlash 9e99\nshow form\n";
    Editor_Session session;
    const Lines kept = session.Play(overflow + "cancel" + then + "show cmbHookFlash cmdApply\n" +
                                    "answer discard\nfocus txtDescription\nshow form");
    EXPECT_TRUE(Only(kept, "form").at(0).at("visible"));
    EXPECT_EQ(Last_Control(kept, "cmbHookFlash").at("text"), "9e99");
    EXPECT_TRUE(Last_Control(kept, "cmdApply").at("enabled"));
    EXPECT_FALSE(Only(kept, "form").at(1).at("loaded"));
    EXPECT_EQ(Only(kept, "result").at(0).at("ErrLocation"), location + "LostFocus");

    // Not numeric, what is left behind stays; a refused edit brings the accepted text back.
    const std::string endless = Repeated(40000, 'x');
    const Lines left = session.Play(overflow + "cancel\npaste cmbRingOn " + endless +
                                    "\nfocus txtDescription\nshow cmbRingOn\npaste cmbRingOn x\n"
                                    "show cmbRingOn\nanswer discard\nclose");
    EXPECT_EQ(Only(left, "control").at(0).at("text"), endless);
    EXPECT_EQ(Only(left, "control").at(1).at("text"), "2000");
    EXPECT_EQ(Only(left, "box").size(), 2U) << "leaving it is no error";

    const Lines saved = session.Play(overflow + "save" + then, {"--trace"});
    const auto calls = Calls(saved);
    const std::string save = "Update_Style_Node(1,1,12,9e99,7,!,,12#,!,PARTIAL,1,New)";
    EXPECT_EQ(std::count(calls.begin(), calls.end(), save), 1);
    EXPECT_FALSE(Only(saved, "form").at(0).at("loaded"));
    EXPECT_EQ(Only(saved, "result").at(0).at("ErrLocation"), location + "Change");
}
