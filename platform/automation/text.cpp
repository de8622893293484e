#include "automation/text.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace automation {

namespace {

constexpr char32_t Replacement = 0xFFFD;

bool Is_Lead(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool Is_Trail(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void Append_UTF16(String& text, char32_t point) {
    if (point < 0x10000) {
        text.push_back(static_cast<char16_t>(point));
        return;
    }
    point -= 0x10000;
    text.push_back(static_cast<char16_t>(0xD800 + (point >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
}

void Append_UTF8(std::string& text, char32_t point) {
    auto tail = [&](int shift) { text.push_back(static_cast<char>(0x80 | ((point >> shift) & 0x3F))); };
    if (point < 0x80) {
        text.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (point >> 6)));
        tail(0);
    } else if (point < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | (point >> 12)));
        tail(6);
        tail(0);
    } else {
        text.push_back(static_cast<char>(0xF0 | (point >> 18)));
        tail(12);
        tail(6);
        tail(0);
    }
}

// Length of the sequence that `lead` begins and the bits it gives; 0 when it begins none.
int Sequence_Length(unsigned char lead, char32_t& bits) {
    if (lead < 0x80) {
        bits = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        bits = lead & 0x1FU;
        return 2;
    }
    if ((lead & 0xF0U) == 0xE0) {
        bits = lead & 0x0FU;
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        bits = lead & 0x07U;
        return 4;
    }
    return 0;
}

bool Is_Scalar(char32_t point, int length) {
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return point >= smallest[length] && point <= 0x10FFFF && !Is_Lead(point) && !Is_Trail(point);
}

} // namespace

namespace {

// The character at the beginning of `utf8`, which goes; nothing, and one byte goes, when there is none.
std::optional<char32_t> Take_Character(std::string_view& utf8) {
    char32_t point = 0;
    const int length = Sequence_Length(static_cast<unsigned char>(utf8.front()), point);
    bool good = length > 0 && static_cast<std::size_t>(length) <= utf8.size();
    for (int index = 1; good && index < length; ++index) {
        const auto byte = static_cast<unsigned char>(utf8[static_cast<std::size_t>(index)]);
        good = (byte & 0xC0U) == 0x80;
        point = (point << 6) | (byte & 0x3FU);
    }
    good = good && (length == 1 || Is_Scalar(point, length));
    utf8.remove_prefix(good ? static_cast<std::size_t>(length) : 1);
    return good ? std::optional(point) : std::nullopt;
}

// Nearly every text is ASCII to its end: eight characters are looked at together.
std::size_t ASCII_Length(std::string_view utf8) {
    constexpr std::uint64_t high_bits = 0x8080808080808080;
    std::size_t at = 0;
    for (std::uint64_t eight = 0; at + sizeof eight <= utf8.size(); at += sizeof eight) {
        std::memcpy(&eight, utf8.data() + at, sizeof eight);
        if ((eight & high_bits) != 0)
            break;
    }
    while (at < utf8.size() && static_cast<unsigned char>(utf8[at]) < 0x80)
        ++at;
    return at;
}

// Moves what is ASCII at the beginning of `utf8` to a text that holds nothing yet.
void Take_ASCII(std::string_view& utf8, String& text) {
    const std::size_t length = ASCII_Length(utf8);
    text.reserve(utf8.size());
    text.assign(utf8.begin(), utf8.begin() + static_cast<std::ptrdiff_t>(length));
    utf8.remove_prefix(length);
}

} // namespace

bool Convert_UTF8(std::string_view utf8, String& text) {
    Take_ASCII(utf8, text);
    while (!utf8.empty()) {
        const auto point = Take_Character(utf8);
        if (!point)
            return false;
        Append_UTF16(text, *point);
    }
    return true;
}

std::optional<String> From_UTF8(std::string_view utf8) {
    String text;
    return Convert_UTF8(utf8, text) ? std::optional(std::move(text)) : std::nullopt;
}

String From_UTF8_Replacing(std::string_view utf8) {
    String text;
    Take_ASCII(utf8, text);
    while (!utf8.empty())
        Append_UTF16(text, Take_Character(utf8).value_or(Replacement));
    return text;
}

std::string To_UTF8(String_View text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t point = text[at];
        if (Is_Lead(point) && at + 1 < text.size() && Is_Trail(text[at + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (text[at + 1] - 0xDC00U);
            ++at;
        } else if (Is_Lead(point) || Is_Trail(point)) {
            point = Replacement;
        }
        Append_UTF8(utf8, point);
    }
    return utf8;
}

bool Is_Unseen(char32_t character) {
    struct Range {
        char32_t First, Last;
    };
    // Controls, what joins or turns text, line separators, tags and the first half of their pairs.
    constexpr Range unseen[] = {{0, 0x1F},        {0x7F, 0x9F},     {0xAD, 0xAD},     {0x61C, 0x61C},
                                {0x180E, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},
                                {0xDB40, 0xDB40}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE0FFF}};
    return std::any_of(std::begin(unseen), std::end(unseen), [character](const Range& range) {
        return character >= range.First && character <= range.Last;
    });
}

bool Is_Well_Formed(String_View text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (Is_Trail(text[at]))
            return false;
        if (Is_Lead(text[at]) && (++at == text.size() || !Is_Trail(text[at])))
            return false;
    }
    return true;
}

String Trim_Right(String_View text) {
    const auto last = text.find_last_not_of(u' ');
    return String(text.substr(0, last == String_View::npos ? 0 : last + 1));
}

String Trim_Left(String_View text) {
    const auto first = text.find_first_not_of(u' ');
    return String(first == String_View::npos ? String_View{} : text.substr(first));
}

// Letters beyond ASCII are left alone: the product's keys are decimal numbers and its names ASCII.
static char16_t Folded(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

String Case_Folded(String_View text) {
    String folded(text);
    for (char16_t& unit : folded)
        unit = Folded(unit);
    return folded;
}

bool Equal_Ignoring_Case(String_View left, String_View right) {
    if (left.size() != right.size())
        return false;
    for (std::size_t at = 0; at < left.size(); ++at)
        if (Folded(left[at]) != Folded(right[at]))
            return false;
    return true;
}

} // namespace automation
