#include "shell/quoted_text.h"

namespace shell {

using automation::String;
using automation::String_View;

namespace {

std::optional<unsigned> Hexadecimal_Digit(char16_t unit) {
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    if (unit >= u'a' && unit <= u'f')
        return unit - u'a' + 10u;
    if (unit >= u'A' && unit <= u'F')
        return unit - u'A' + 10u;
    return std::nullopt;
}

// The code unit behind \u; `rest` stands behind the u.
std::optional<char16_t> Take_Code_Unit(String_View& rest) {
    constexpr std::size_t digits = 4;
    if (rest.size() < digits)
        return std::nullopt;
    unsigned value = 0;
    for (const char16_t unit : rest.substr(0, digits)) {
        const auto digit = Hexadecimal_Digit(unit);
        if (!digit)
            return std::nullopt;
        value = value * 16 + *digit;
    }
    rest.remove_prefix(digits);
    return static_cast<char16_t>(value);
}

// `rest` stands behind the backslash.
std::optional<char16_t> Take_Escape(String_View& rest) {
    if (rest.empty())
        return std::nullopt;
    const char16_t letter = rest.front();
    rest.remove_prefix(1);
    switch (letter) {
    case u'"':
    case u'\\':
        return letter;
    case u't':
        return u'\t';
    case u'n':
        return u'\n';
    case u'u':
        return Take_Code_Unit(rest);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<String> Take_Quoted(String_View& rest) {
    if (!rest.starts_with(u'"'))
        return std::nullopt;
    String text;
    for (String_View left = rest.substr(1); !left.empty();) {
        const char16_t unit = left.front();
        left.remove_prefix(1);
        if (unit == u'"') {
            rest = left;
            return text;
        }
        const auto taken = unit == u'\\' ? Take_Escape(left) : std::optional(unit);
        if (!taken)
            return std::nullopt;
        text += *taken;
    }
    return std::nullopt;
}

} // namespace shell
