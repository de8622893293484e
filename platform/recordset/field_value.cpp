#include "field_value.h"

#include "automation/number.h"
#include "automation/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace recordset {

namespace {

using automation::Variant;
using Decoded = std::optional<Variant>;

bool Is_Digit(char unit) {
    return unit >= '0' && unit <= '9';
}

bool All_Digits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), Is_Digit);
}

// Decimal digits behind an optional sign.
template <typename Number>
std::optional<Number> Whole_Number(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && Is_Digit(text[1]))
        text.remove_prefix(1);
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || stop != end || error != std::errc())
        return std::nullopt;
    return value;
}

template <typename Read, typename Kept>
Decoded Decoded_Whole(std::string_view text) {
    const auto value = Whole_Number<Read>(text);
    return value ? Decoded(Variant(static_cast<Kept>(*value))) : std::nullopt;
}

Decoded Decoded_Byte(std::string_view text) {
    const auto value = Whole_Number<std::uint8_t>(text);
    return value ? Decoded(Variant::Byte(*value)) : std::nullopt;
}

// There is no unsigned variant of 64 bits.
Decoded Decoded_Unsigned(std::string_view text) {
    const auto value = Whole_Number<std::uint64_t>(text);
    if (!value)
        return std::nullopt;
    if (*value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        return Variant(static_cast<double>(*value));
    return Variant(static_cast<std::int64_t>(*value));
}

// The platform's general numbers, less what they allow for people: blanks, group separators, a sign behind.
std::optional<double> Floating_Number(std::string_view text) {
    if (text.find_first_not_of("0123456789+-.eE") != std::string_view::npos || text.ends_with('+') ||
        text.ends_with('-'))
        return std::nullopt;
    return automation::Recognised_Number(automation::String(text.begin(), text.end()));
}

Decoded Decoded_Double(std::string_view text) {
    const auto value = Floating_Number(text);
    return value ? Decoded(Variant(*value)) : std::nullopt;
}

Decoded Decoded_Single(std::string_view text) {
    const auto value = Floating_Number(text);
    if (!value || std::fabs(*value) > static_cast<double>(std::numeric_limits<float>::max()))
        return std::nullopt;
    return Variant(static_cast<float>(*value));
}

// Exact: never by way of a floating number.
Decoded Decoded_Currency(std::string_view text) {
    constexpr std::size_t decimals = 4;
    const std::size_t point = text.find('.');
    const bool has_point = point != std::string_view::npos;
    const auto fraction = has_point ? text.substr(point + 1) : std::string_view{};
    std::string digits(text.substr(0, point));
    if (has_point ? !All_Digits(fraction) : digits.empty() || !Is_Digit(digits.back()))
        return std::nullopt;
    if (fraction.size() > decimals)
        return std::nullopt;
    digits.append(fraction).append(decimals - fraction.size(), '0');
    const auto ten_thousandths = Whole_Number<std::int64_t>(digits);
    return ten_thousandths ? Decoded(Variant::Currency(*ten_thousandths)) : std::nullopt;
}

Decoded Decoded_Boolean(std::string_view text) {
    const automation::String wide(text.begin(), text.end());
    if (text == "1" || text == "-1" || automation::Equal_Ignoring_Case(wide, u"True"))
        return Variant::Boolean(true);
    if (text == "0" || automation::Equal_Ignoring_Case(wide, u"False"))
        return Variant::Boolean(false);
    return std::nullopt;
}

// yyyy-mm-dd as days since 1899-12-30.
std::optional<double> Days(std::string_view text) {
    using namespace std::chrono;
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const auto part = [text](std::size_t from, std::size_t length) {
        const auto digits = text.substr(from, length);
        return All_Digits(digits) ? Whole_Number<unsigned>(digits).value_or(0) : 0;
    };
    const unsigned first_year = 100; // the platform's dates begin there
    const unsigned year_number = part(0, 4);
    const year_month_day date{year{static_cast<int>(year_number)}, month{part(5, 2)}, day{part(8, 2)}};
    if (year_number < first_year || !date.ok())
        return std::nullopt;
    const sys_days epoch{year{1899} / 12 / 30};
    return static_cast<double>((sys_days{date} - epoch).count());
}

// hh:mm:ss with an optional fraction of a second, as a part of a day.
std::optional<double> Time_Of_Day(std::string_view text) {
    if (text.size() < 8 || text[2] != ':' || text[5] != ':')
        return std::nullopt;
    std::array<unsigned, 3> parts{};
    for (std::size_t index = 0; index < parts.size(); ++index) {
        const auto digits = text.substr(index * 3, 2);
        if (!All_Digits(digits))
            return std::nullopt;
        parts[index] = *Whole_Number<unsigned>(digits);
    }
    const auto fraction = text.substr(8);
    if (!fraction.empty() && (fraction[0] != '.' || !All_Digits(fraction.substr(1))))
        return std::nullopt;
    if (parts[0] > 23 || parts[1] > 59 || parts[2] > 59)
        return std::nullopt;
    const double part_of_second = fraction.empty() ? 0 : Floating_Number(fraction).value_or(0);
    return (parts[0] * 3600 + parts[1] * 60 + parts[2] + part_of_second) / 86400;
}

Decoded Decoded_Date(std::string_view text) {
    const auto days = Days(text);
    return days ? Decoded(Variant::Date(*days)) : std::nullopt;
}

Decoded Decoded_Time(std::string_view text) {
    const auto time = Time_Of_Day(text);
    return time ? Decoded(Variant::Date(*time)) : std::nullopt;
}

Decoded Decoded_Date_And_Time(std::string_view text) {
    const auto separator = text.find('T');
    if (separator == std::string_view::npos)
        return Decoded_Date(text);
    const auto days = Days(text.substr(0, separator));
    const auto time = Time_Of_Day(text.substr(separator + 1));
    return days && time ? Decoded(Variant::Date(*days + *time)) : std::nullopt;
}

Decoded Decoded_Bytes(std::string_view text) {
    if (text.size() % 2 != 0)
        return std::nullopt;
    std::vector<std::uint8_t> bytes(text.size() / 2);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const char* pair = text.data() + index * 2;
        const auto [stop, error] = std::from_chars(pair, pair + 2, bytes[index], 16);
        if (stop != pair + 2 || error != std::errc())
            return std::nullopt;
    }
    return Variant::Bytes(bytes);
}

struct Named_Type {
    std::string_view Name;
    Decoder Decode;
};

using automation::Integer;
using automation::Long;

constexpr std::array Named_Types{
    Named_Type{"i1", Decoded_Whole<std::int8_t, Integer>},
    Named_Type{"i2", Decoded_Whole<std::int16_t, Integer>},
    Named_Type{"i4", Decoded_Whole<std::int32_t, Long>},
    Named_Type{"int", Decoded_Whole<std::int32_t, Long>},
    Named_Type{"i8", Decoded_Whole<std::int64_t, std::int64_t>},
    Named_Type{"ui1", Decoded_Byte},
    Named_Type{"ui2", Decoded_Whole<std::uint16_t, Long>},
    Named_Type{"ui4", Decoded_Whole<std::uint32_t, std::int64_t>},
    Named_Type{"ui8", Decoded_Unsigned},
    Named_Type{"r4", Decoded_Single},
    Named_Type{"r8", Decoded_Double},
    Named_Type{"float", Decoded_Double},
    Named_Type{"number", Decoded_Double},
    Named_Type{"fixed.14.4", Decoded_Currency},
    Named_Type{"boolean", Decoded_Boolean},
    Named_Type{"dateTime", Decoded_Date_And_Time},
    Named_Type{"date", Decoded_Date},
    Named_Type{"time", Decoded_Time},
    Named_Type{"bin.hex", Decoded_Bytes},
};

} // namespace

std::optional<Variant> Decoded_Text(std::string_view utf8) {
    return Variant(automation::From_UTF8(utf8).value_or(automation::String()));
}

std::optional<Variant> Decoded_As(Decoder type, std::string_view attribute) {
    return attribute.empty() ? Decoded_Text(attribute) : type(attribute);
}

Decoder Decoder_Of(std::string_view type_name) {
    const auto* found = std::find_if(Named_Types.begin(), Named_Types.end(),
                                     [type_name](const auto& type) { return type.Name == type_name; });
    return found == Named_Types.end() ? Decoded_Text : found->Decode;
}

} // namespace recordset
