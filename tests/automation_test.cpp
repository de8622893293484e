// Texts, collections and failures.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <thread>
#include <tuple>

#include "automation/collection.h"
#include "automation/number.h"
#include "automation/text.h"
#include "automation/text_builder.h"
#include "failure_number.h"

namespace {

using namespace automation;

TEST(Text, UTF8_And_UTF16) {
    const std::tuple<std::string, String, bool> cases[] = {
        {"", u"", true},
        {std::string("a\0Z~", 4), String(u"a\0Z~", 4), true},
        {"\x7F\xC2\x80", u"\x7F\x80", true},
        {"\xDF\xBF\xE0\xA0\x80", u"\u07FF\u0800", true},
        {"\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\uD7FF\uE000\uFFFF", true},
        {"\xF0\x90\x80\x80", {0xD800, 0xDC00}, true},
        {"x\xF4\x8F\xBF\xBFy", {u'x', 0xDBFF, 0xDFFF, u'y'}, true},
        {"a\xEF\xBF\xBDz", {u'a', 0xD83D, u'z'}, false}, // surrogates without a partner
        {"\xEF\xBF\xBD\xEF\xBF\xBD", {0xDE00, 0xD83D}, false},
        {"\xEF\xBF\xBD\xF0\x9F\x98\x80", {0xD83D, 0xD83D, 0xDE00}, false}};
    for (const auto& [utf8, utf16, well_formed] : cases) {
        EXPECT_EQ(To_UTF8(utf16), utf8);
        EXPECT_EQ(From_UTF8(utf8) == utf16, well_formed) << utf8;
        EXPECT_EQ(Is_Well_Formed(utf16), well_formed) << utf8;
    }
}

TEST(Text, Malformed_UTF8) {
    // Without a beginning, cut off, longer than needed, surrogates, and beyond the last character.
    for (const char* text : {"\x80", "\xC3\xA9\xA9", "\xC2", "\xC2z", "\xE2\x82z", "\xF0\x9F\x98", "\xC0\x80",
                             "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
                             "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF"})
        EXPECT_FALSE(From_UTF8("ab" + std::string(text))) << testing::PrintToString(text);
}

TEST(Text, UTF8_Beyond_ASCII_At_Every_Place) {
    for (std::size_t place = 0; place < 20; ++place) {
        const std::string before(place, 'x');
        const String wide(place, u'x');
        EXPECT_EQ(From_UTF8(before + "\xC3\xA4yyyyyyyyy"), wide + u"\u00E4yyyyyyyyy") << place;
        EXPECT_FALSE(From_UTF8(before + "\x80yyyyyyyyy")) << place;
        String reused = u"something that was there before";
        EXPECT_TRUE(automation::Convert_UTF8(before, reused));
        EXPECT_EQ(reused, wide);
    }
}

TEST(Text, Builder_Gives_What_Was_Appended) {
    automation::Text_Builder builder;
    EXPECT_EQ(builder.Finish().View(), u"");
    String whole;
    for (char16_t unit = u'a'; unit < u'a' + 2000; ++unit) {
        builder.Append(unit);
        builder.Append(String(unit % 7, unit));
        whole += String(unit % 7U + 1, unit);
    }
    builder.Append(u"gone");
    builder.Cut(builder.Length() - 4);
    automation::Text_Builder moved(std::move(builder));
    EXPECT_EQ(moved.Finish().View(), whole);
    moved.Append(u"again");
    EXPECT_EQ(moved.Finish().View(), u"again");
}

TEST(Collections, Are_Keyed_Without_Regard_To_Case) {
    Collection items;
    items.Add(u"first", u"Key");
    items.Add(u"second", u"");
    EXPECT_EQ(items.Item(u"kEY").Text(), u"first");
    EXPECT_EQ(Failure_Number([&] { items.Add(u"third", u"KEY"); }), 457);
    EXPECT_EQ(Failure_Number([&] { items.Item(u"other"); }), 5);
    EXPECT_EQ(items.Count(), 2);
    items.Remove(1);
    EXPECT_EQ(Failure_Number([&] { items.Item(u"Key"); }), 5);
    EXPECT_EQ(Case_Folded(u"@AZ[`az{"), u"@az[`az{");
    items.Add(u"again", u"KEY"); // a removed key is free, and the item goes to the end
    EXPECT_EQ(items.Item(2).Text(), u"again");
}

TEST(Collections, Are_Indexed_From_1) {
    Collection items;
    for (Long count = 0; count <= 4; ++count) {
        if (count > 0)
            items.Add(count, Decimal_Text(count));
        for (Long item = 1; item <= count; ++item)
            EXPECT_EQ(items.Item(item).To_Long(), item) << "of " << count;
        for (const Long outside : {Long{-1}, Long{0}, count + 1, Long{2147483647}}) {
            EXPECT_EQ(Failure_Number([&] { items.Item(outside); }), 9) << outside << " of " << count;
            EXPECT_EQ(Failure_Number([&] { items.Remove(outside); }), 9) << outside << " of " << count;
        }
    }
}

void Expect_Failure(const std::function<void()>& body, Long number, String_View source,
                    String_View description) {
    try {
        body();
        ADD_FAILURE() << "no failure: " << To_UTF8(description);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number, number) << To_UTF8(description);
        EXPECT_EQ(failure.Source, source) << To_UTF8(description);
        EXPECT_EQ(failure.Description, description);
    }
}

TEST(Failures, Cross_A_Module_Boundary) {
    struct {
        std::function<void()> Body;
        Long Number;
        String_View Source, Description;
    } const cases[] = {
        {[] { Raise(13); }, 13, u"Module", u"Type mismatch"},
        {[] { Raise_Missing_Resource(58); }, 326, u"Module", u"Resource with identifier '58' not found"},
        {[] { throw Failure(3021, u"No row", u"Rows"); }, 3021, u"Rows", u"No row"},
        {[] { throw Failure(-7, u"Status"); }, -7, u"Module", u"Status"},
        {[] { throw Failure(0, u""); }, Status_Unspecified, u"Module", u""},
        {[] { throw std::bad_alloc(); }, 7, u"Module", u"Out of memory"},
        {[] { throw std::runtime_error("\xC3\xA9"); }, -2147467259, u"Module", u"\u00E9"},
        {[] { throw std::runtime_error("\xE9"); }, -2147467259, u"Module", u"\uFFFD"},
        {[] { throw 42; }, -2147467259, u"Module", u"Unspecified error"},
        {[] { Check(Guard(u"Inner", [] { Raise(6); })); }, 6, u"Inner", u"Overflow"}};
    for (const auto& one : cases) {
        const Status status = Guard(u"Module", one.Body);
        EXPECT_EQ(status, one.Number < 0 ? one.Number : AUTOMATION_RUN_TIME(one.Number))
            << To_UTF8(one.Description);
        Expect_Failure([&] { Check(status); }, one.Number, one.Source, one.Description);
        EXPECT_FALSE(Take_Error()) << "taken by the check";
    }
    EXPECT_EQ(Guard(u"Module", [] {}), Status_OK);
}

TEST(Failures, Without_An_Error_Object) {
    for (const Status status : {0, 1, 2147483647})
        EXPECT_NO_THROW(Check(status)) << status;
    for (const Status status : {-1, Status_Unspecified, Status_No_Interface})
        Expect_Failure([&] { Check(status); }, status, u"", u"Automation error");
    Expect_Failure([] { Check(AUTOMATION_RUN_TIME(94)); }, 94, u"", u"Invalid use of Null");
}

TEST(Failures, Of_An_Earlier_Call_Do_Not_Speak_For_A_Later_One) {
    struct Answering {
        Status Answer(Status status) { return status; }
    } object;
    for (const auto& [status, number] :
         {std::pair<Status, Long>(Status_OK, 0), {AUTOMATION_RUN_TIME(94), 94}, {-1, -1}}) {
        Set_Error(Failure(13, u"earlier"));
        Long told = 0;
        try {
            Call(&object, &Answering::Answer, status);
        } catch (const Failure& failure) {
            told = failure.Number;
        }
        EXPECT_EQ(told, number);
        EXPECT_FALSE(Take_Error());
    }
}

TEST(Failures, Belong_To_Their_Thread) {
    Set_Error(Failure(13, u"here"));
    std::thread([] {
        EXPECT_FALSE(Take_Error());
        Set_Error(Failure(6, u"there"));
    }).join();
    EXPECT_EQ(Take_Error().value_or(Failure(0, u"")).Number, 13);
    EXPECT_FALSE(Take_Error());
}

} // namespace
