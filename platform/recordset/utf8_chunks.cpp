#include "utf8_chunks.h"

#include "automation/text.h"

#include <algorithm>

namespace recordset {

using automation::String_View;

namespace {

bool Is_ASCII(char16_t unit) {
    return unit < 0x80;
}

// Nearly everything is ASCII: eight units are tested at once.
std::size_t ASCII_Length(String_View text) {
    constexpr std::size_t step = 8;
    std::size_t at = 0;
    while (at + step <= text.size()) {
        unsigned bits = 0;
        for (std::size_t index = 0; index < step; ++index)
            bits |= text[at + index];
        if (bits >= 0x80)
            break;
        at += step;
    }
    while (at < text.size() && Is_ASCII(text[at]))
        ++at;
    return at;
}

String_View Whole_Characters(String_View text, std::size_t units) {
    if (units >= text.size())
        return text;
    const char16_t last = text[units - 1];
    const bool divides = last >= 0xD800 && last <= 0xDBFF;
    return text.substr(0, divides ? units - 1 : units);
}

} // namespace

std::optional<std::size_t> UTF8_Chunks::Take(std::size_t units, char* target) {
    String_View chunk = Whole_Characters(rest, units);
    rest.remove_prefix(chunk.size());
    char* end = target;
    while (!chunk.empty()) {
        const auto plain = chunk.substr(0, ASCII_Length(chunk));
        end = std::transform(plain.begin(), plain.end(), end,
                             [](char16_t unit) { return static_cast<char>(unit); });
        chunk.remove_prefix(plain.size());
        const auto next = std::find_if(chunk.begin(), chunk.end(), Is_ASCII);
        const auto other = chunk.substr(0, static_cast<std::size_t>(next - chunk.begin()));
        if (!automation::Is_Well_Formed(other))
            return std::nullopt;
        const std::string converted = automation::To_UTF8(other);
        end = std::copy(converted.begin(), converted.end(), end);
        chunk.remove_prefix(other.size());
    }
    return static_cast<std::size_t>(end - target);
}

} // namespace recordset
