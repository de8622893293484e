// The rules of the dialog's fields as one would check a text against them, without a dialog.
#pragma once

#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>

namespace fuzz {

using Text = std::u16string;

enum class Field_Kind { Milliseconds, Count, Dial, Label };

struct Field_Rule {
    Field_Kind Kind;
    std::size_t Longest;
    double Bound = 0;
    bool Is_Trimmed = true;
};

constexpr Field_Rule Hook_Flash{Field_Kind::Milliseconds, 4, 2000};
constexpr Field_Rule Busy{Field_Kind::Milliseconds, 4, 1500};
constexpr Field_Rule Ring{Field_Kind::Milliseconds, 5, 10000};
constexpr Field_Rule Retries{Field_Kind::Count, 2, 30};
constexpr Field_Rule Ring_Limit{Field_Kind::Count, 2, 20};
constexpr Field_Rule Dial_String{Field_Kind::Dial, 7};
constexpr Field_Rule Label{Field_Kind::Label, 30, 0, false};

inline bool Is_Digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

inline Text Without_Spaces(Text text) {
    text.erase(text.find_last_not_of(u' ') + 1);
    return text.substr(std::min(text.find_first_not_of(u' '), text.size()));
}

// Takes digits, and separators behind a digit where they may stand. How many digits there were.
inline std::size_t Take_Digits(const Text& text, std::size_t& at, bool grouped, std::string& plain) {
    std::size_t digits = 0;
    for (; at < text.size(); ++at)
        if (Is_Digit(text[at]))
            plain += static_cast<char>(text[at]), ++digits;
        else if (!grouped || digits == 0 || text[at] != u',')
            break;
    return digits;
}

// A sign once, before or behind; digits in groups, a point, an exponent.
inline std::optional<double> Number(Text text) {
    const auto is_sign = [](char16_t unit) { return unit == u'+' || unit == u'-'; };
    text = Without_Spaces(text);
    std::string plain;
    std::size_t at = 0;
    const bool signed_before = !text.empty() && is_sign(text[0]);
    const bool signed_behind = !signed_before && !text.empty() && is_sign(text.back());
    if ((signed_before && text[at++] == u'-') || (signed_behind && text.back() == u'-'))
        plain = "-";
    if (signed_behind)
        text.pop_back();
    std::size_t digits = Take_Digits(text, at, true, plain);
    if (at < text.size() && text[at] == u'.') {
        plain += '.', ++at;
        digits += Take_Digits(text, at, false, plain);
    }
    if (digits > 0 && at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        plain += 'e', ++at;
        if (at < text.size() && is_sign(text[at]))
            plain += static_cast<char>(text[at++]);
        if (Take_Digits(text, at, false, plain) == 0)
            return std::nullopt;
    }
    const double value = std::strtod(plain.c_str(), nullptr);
    return digits == 0 || at < text.size() || std::isinf(value) ? std::nullopt : std::optional(value);
}

inline bool Is_Number_That_Stands(const Field_Rule& rule, const Text& text) {
    const auto value = Number(text);
    return value && std::nearbyint(*value) <= rule.Bound && Text(u"+-,.").find(text.back()) == Text::npos;
}

inline bool Is_Dial_String(const Text& text) {
    if (Number(text))
        return text.back() != u'.';
    return Is_Digit(text.back()) || Text(u",#!*").find(text.back()) != Text::npos;
}

// Whether the text may stand in the field while it is edited.
inline bool Obeys(const Field_Rule& rule, const Text& text) {
    if (text.size() > rule.Longest || (rule.Is_Trimmed && text != Without_Spaces(text)))
        return false;
    if (text.empty() || rule.Kind == Field_Kind::Label)
        return true;
    return rule.Kind == Field_Kind::Dial ? Is_Dial_String(text) : Is_Number_That_Stands(rule, text);
}

// Whether it may stand there once the focus has gone.
inline bool Is_In_Range_When_Left(const Field_Rule& rule, const Text& text) {
    if (rule.Kind == Field_Kind::Milliseconds)
        return std::nearbyint(Number(text).value_or(0)) >= 50;
    return rule.Kind != Field_Kind::Count || text >= u"1";
}

} // namespace fuzz
