#include "text_file.h"

#include "automation/text.h"

#include <algorithm>

namespace shell {

using automation::String;
using automation::String_View;

namespace {

constexpr String_View Blanks = u" \t";
constexpr std::string_view UTF8_Mark = "\xEF\xBB\xBF";
constexpr std::string_view Little_Endian_Mark = "\xFF\xFE";
constexpr std::string_view Big_Endian_Mark = "\xFE\xFF";

// Calls `take` for each line, which is a view into `text`; no line stands behind the last line end.
template <typename Character, typename Take>
void For_Each_Line(std::basic_string_view<Character> text, Take&& take) {
    for (std::size_t number = 1; !text.empty(); ++number) {
        const auto end = text.find(Character{'\n'});
        auto line = text.substr(0, end);
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
        if (!line.empty() && line.back() == Character{'\r'})
            line.remove_suffix(1);
        take(line, number);
    }
}

// `bytes` without the byte-order mark; `low` is the place of the low byte in a code unit.
String UTF16_Text(std::string_view bytes, std::size_t low) {
    if (bytes.size() % 2 != 0)
        throw Format_Error(0, "ends in the middle of a UTF-16 character");
    String text(bytes.size() / 2, u'\0');
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = [&](std::size_t index) {
            return static_cast<unsigned char>(bytes[2 * at + index]);
        };
        text[at] = static_cast<char16_t>(byte(low) | byte(1 - low) << 8);
    }
    return text;
}

std::vector<String> UTF16_Lines(const String& text) {
    std::vector<String> lines;
    For_Each_Line(String_View(text), [&](String_View line, std::size_t number) {
        if (!automation::Is_Well_Formed(line))
            throw Format_Error(number, "is not well-formed UTF-16");
        lines.emplace_back(line);
    });
    return lines;
}

} // namespace

std::vector<String> UTF8_Lines(std::string_view bytes) {
    if (bytes.starts_with(UTF8_Mark))
        bytes.remove_prefix(UTF8_Mark.size());
    std::vector<String> lines;
    For_Each_Line(bytes, [&](std::string_view line, std::size_t number) {
        auto text = automation::From_UTF8(line);
        if (!text)
            throw Format_Error(number, "is not UTF-8");
        lines.push_back(std::move(*text));
    });
    return lines;
}

std::vector<String> Unicode_Lines(std::string_view bytes) {
    if (bytes.starts_with(Little_Endian_Mark))
        return UTF16_Lines(UTF16_Text(bytes.substr(2), 0));
    if (bytes.starts_with(Big_Endian_Mark))
        return UTF16_Lines(UTF16_Text(bytes.substr(2), 1));
    return UTF8_Lines(bytes);
}

String_View Without_Leading_Blanks(String_View text) {
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    return text;
}

String_View Without_Blanks(String_View text) {
    text = text.substr(0, text.find_last_not_of(Blanks) + 1);
    return Without_Leading_Blanks(text);
}

} // namespace shell
