// Which texts are numbers, and what becomes of them.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <vector>

#include "automation/number.h"
#include "automation/text.h"
#include "failure_number.h"

namespace {

using namespace automation;
using namespace std::string_view_literals;

constexpr Integer Least = -32768, Most = 32767;

// The texts between the bars.
std::vector<String> Texts(String_View list) {
    std::vector<String> texts(1);
    for (const char16_t unit : list)
        if (unit == u'|')
            texts.emplace_back();
        else
            texts.back() += unit;
    return texts;
}

TEST(Number, Accepts) {
    const std::pair<double, String_View> cases[] = {
        {0, u"0|000|-0|0-|0.|.0|0,0|0e99999999999999999999"},
        {5, u"5|+5|5+|005|5.|5.0|5,|5,.|5e0|5.e0| 5|5 | +5  |  5+ |.5e1"},
        {-5, u"-5|5-| -5 | 5- |-5.|5.-|5,-|5e0-|-5e0|-005"},
        {0.5, u".5|0.5|+.5|.5+|0,0.5|5e-1"},
        {-0.5, u"-.5|.5-|-0.5|-5e-1"},
        {1234, u"1,234|12,34|1,2,3,4|1,,234|1234,|1,234.|1,234.0|1,234+"},
        {1000, u"1e3|1E3|1e+3|1.e3|1,0e2|1e003|1000|+1e3|1e3+"},
        {1234567.25, u"1,234,567.25|1234567.25|1.23456725e6|123456725e-2"},
        {-1e9, u"-1e9|1e9-"},
        {9007199254740992, u"9007199254740993"},
        // both ends of the range of a double; what is too small is zero
        {DBL_MAX, u"1.7976931348623157e308"},
        {-DBL_MAX, u"-1.7976931348623157e308"},
        {std::numeric_limits<double>::denorm_min(), u"4.9406564584124654e-324"},
        {0, u"1e-400|0.0001e-322|1e-99999999999999999999|10000e-9223372036854775808"}};
    for (const auto& [value, list] : cases)
        for (const String& text : Texts(list))
            EXPECT_EQ(Recognised_Number(text), value) << "'" << To_UTF8(text) << "'";
}

TEST(Number, Rejects) {
    const std::pair<const char*, String_View> cases[] = {
        {"no digit", u"| |   |-|+|.|,|-.|.-|,.|-,|e| - "},
        {"signs", u"5-5|--5|++5|+-5|-5-|-5+|+5-|5--|5+-|-5e3-|5-e3"},
        {"points", u"1.2.3|1..2|15.."},
        {"separators outside the integer part", u",5|,5.5|,.5|,123|-,5|.,5|1.2,3|1.5,|1,234.5,6|1e1,5"},
        {"exponent", u"1e|1E|1e+|1e-|e5|-e5|.e5|,e5|1e1.5|1e5e5|1ee5|1e+-5|1e--5|1d3"},
        {"blank inside", u"1 2|- 5|5 -|1 ,234|1 .5|1e 3|1 e3|1e- 3"},
        {"letters", u"a|12a|a12|0x10|&H10|inf|-INF|infinity|nan|NaN|nan(1)|True"},
        {"other characters", u"1_000|1'000|$5|5%|(5)|12\n|1\u00A0|\u22125|\uFF11|\u0661|\U0001F600"},
        {"low byte of a digit", u"\u0131|1\u0132|\u0131\u0132"},
        {"NUL", u"\0|1\0|1\0002"sv},
        {"beyond a double", u"1e309|-1e309|1e400|1.7976931348623159e308|0.001e400|9e99999"},
        {"far beyond", u"1e99999999999999999999|10000e9223372036854775807|1e9223372036854775808"}};
    for (const auto& [reason, list] : cases)
        for (const String& text : Texts(list))
            EXPECT_FALSE(Is_Numeric(text)) << "'" << To_UTF8(text) << "', " << reason;
}

TEST(Number, Conversions_Round_Halves_To_Even) {
    struct {
        const char* As_Integer;
        const char* As_Long;
        String_View List;
    } const cases[] = {{"0", "0", u"0|0.5|-0.5|0.49|1e-400"},
                       {"2", "2", u"1.5|2.5|+2"},
                       {"-2", "-2", u"-1.5|-2.5|2-"},
                       {"32766", "32766", u"32766.5|32765.5"},
                       {"32767", "32767", u"32767|32766.51|32767.49"},
                       {"!6", "32768", u"32767.5|32768|32768.5"},
                       {"-32768", "-32768", u"-32768|-32767.5|-32768.5"},
                       {"!6", "-32769", u"-32768.51|-32769"},
                       {"!6", "2147483647", u"2147483647|2147483647.49"},
                       {"!6", "-2147483648", u"-2147483648|-2147483648.5"},
                       {"!6", "!6", u"2147483647.5|2147483648|-2147483648.51|-2147483649|9e99|-1e308"},
                       {"!13", "!13", u"| |-|12a|(null)|1e309"}};
    for (const auto& [as_integer, as_long, list] : cases)
        for (const String& text : Texts(list)) {
            EXPECT_EQ(Outcome([&] { return To_Integer(text); }), as_integer) << To_UTF8(text);
            EXPECT_EQ(Outcome([&] { return To_Long(text); }), as_long) << To_UTF8(text);
        }
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, DBL_MAX}) {
        EXPECT_EQ(Failure_Number([&] { (void)To_Integer(value); }), 6) << value;
        EXPECT_EQ(Failure_Number([&] { (void)To_Long(value); }), 6) << value;
    }
}

TEST(Number, Arithmetic_Is_Checked) {
    const auto result = [](Integer (*operation)(Integer, Integer), Integer left, Integer right) {
        return Outcome([&] { return operation(left, right); });
    };
    EXPECT_EQ(result(Add, Most, 1), "!6");
    EXPECT_EQ(result(Add, Most, Least), "-1");
    EXPECT_EQ(result(Subtract, 0, Least), "!6");
    EXPECT_EQ(result(Subtract, -1, Least), "32767");
    EXPECT_EQ(result(Multiply, 59, 555), "32745");
    EXPECT_EQ(result(Multiply, 59, 556), "!6");
    EXPECT_EQ(Outcome([] { return Add(Long{2147483647}, Long{1}); }), "!6");
}

} // namespace
