#include "stored_text.h"

#include <algorithm>

#include "automation/text.h"

namespace stores {

namespace {

constexpr std::size_t Longest_In_A_Message = 200;

bool Is_Plain(char character) {
    return static_cast<unsigned char>(character) < 0x80 &&
           Is_Deliverable(static_cast<char16_t>(static_cast<unsigned char>(character)));
}

std::string Hexadecimal(unsigned value, int digits) {
    std::string text(static_cast<std::size_t>(digits), '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value >>= 4U)
        *digit = "0123456789abcdef"[value & 15U];
    return text;
}

// The bytes of the first character as its first byte announces them; not checked.
std::string_view First_Character(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    return bytes.substr(0, lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4);
}

class Member_Reader {
public:
    explicit Member_Reader(std::string_view json) : rest(json) {}

    std::optional<Members> Read() {
        Members members;
        if (!Take('{') || (!Take('}') && !Read_To_End(members)))
            return {};
        Skip_Blanks();
        return rest.empty() ? std::optional(std::move(members)) : std::nullopt;
    }

private:
    bool Read_To_End(Members& members) {
        do {
            auto name = Text();
            if (!name || !Take(':'))
                return false;
            const bool is_null = Take_Null();
            auto value = is_null ? std::nullopt : Text();
            if (!is_null && !value)
                return false;
            members.emplace_back(std::move(*name), std::move(value));
        } while (Take(','));
        return Take('}');
    }
    void Skip_Blanks() { rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size())); }
    bool Take(char wanted) {
        Skip_Blanks();
        if (rest.empty() || rest.front() != wanted)
            return false;
        rest.remove_prefix(1);
        return true;
    }
    bool Take_Null() {
        Skip_Blanks();
        const bool found = rest.starts_with("null");
        rest.remove_prefix(found ? 4 : 0);
        return found;
    }
    std::optional<std::string> Text() {
        if (!Take('"'))
            return {};
        automation::String text;
        for (;;) {
            const auto plain = std::min(rest.find_first_of("\"\\"), rest.size());
            const auto run = automation::From_UTF8(rest.substr(0, plain));
            const bool has_control =
                std::any_of(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(plain),
                            [](char each) { return static_cast<unsigned char>(each) < ' '; });
            if (!run || has_control || plain == rest.size())
                return {};
            text += *run;
            const char stop = rest[plain];
            rest.remove_prefix(plain + 1);
            if (stop == '"')
                break;
            const auto unit = Unit();
            if (!unit)
                return {};
            text += *unit;
        }
        if (!automation::Is_Well_Formed(text))
            return {};
        return automation::To_UTF8(text);
    }
    // Behind a backslash.
    std::optional<char16_t> Unit() {
        if (rest.empty())
            return {};
        const char kind = rest.front();
        rest.remove_prefix(1);
        if (kind == 'u')
            return Hexadecimal_Unit();
        constexpr std::string_view names = "\"\\/bfnrt", values = "\"\\/\b\f\n\r\t";
        const auto at = names.find(kind);
        return at == std::string_view::npos ? std::nullopt : std::optional(static_cast<char16_t>(values[at]));
    }
    std::optional<char16_t> Hexadecimal_Unit() {
        constexpr std::string_view digits = "0123456789abcdefABCDEF";
        unsigned unit = 0;
        for (int count = 0; count < 4; ++count) {
            const auto digit = rest.empty() ? std::string_view::npos : digits.find(rest.front());
            if (digit == std::string_view::npos)
                return {};
            unit = unit * 16 + static_cast<unsigned>(digit < 16 ? digit : digit - 6);
            rest.remove_prefix(1);
        }
        return static_cast<char16_t>(unit);
    }

    std::string_view rest;
};

} // namespace

bool Is_Deliverable(char16_t unit) {
    const bool is_blank = unit == u'\t' || unit == u'\n' || unit == u'\r';
    return is_blank || (unit >= u' ' && unit < 0xFFFE);
}

bool Can_Be_Delivered(std::string_view bytes) {
    if (std::all_of(bytes.begin(), bytes.end(), Is_Plain))
        return true;
    const auto text = automation::From_UTF8(bytes);
    return text && std::all_of(text->begin(), text->end(), Is_Deliverable);
}

std::string Escaped(std::string_view bytes) {
    std::string escaped;
    while (!bytes.empty()) {
        const auto character = First_Character(bytes);
        const auto units = automation::From_UTF8(character);
        if (!units)
            escaped += "\\x" + Hexadecimal(static_cast<unsigned char>(bytes.front()), 2);
        else if (!Is_Deliverable(units->front()))
            escaped += "\\u" + Hexadecimal(units->front(), 4);
        else
            escaped.append(character == "\\" ? "\\" : "").append(character);
        bytes.remove_prefix(units ? character.size() : 1);
    }
    return escaped;
}

std::string For_A_Message(std::string_view bytes) {
    std::string text = Escaped(bytes.substr(0, Longest_In_A_Message));
    std::replace_if(
        text.begin(), text.end(), [](char each) { return static_cast<unsigned char>(each) < ' '; }, ' ');
    return text;
}

std::optional<Members> Parse_Members(std::string_view json) {
    return Member_Reader(json).Read();
}

std::string Quoted(std::string_view text) {
    automation::String quoted = u"\"";
    for (const char16_t unit : automation::From_UTF8_Replacing(text)) {
        if (unit < u' ' || unit >= 0xFFFE) {
            const std::string digits = Hexadecimal(unit, 4);
            quoted.append(u"\\u").append(digits.begin(), digits.end());
        } else
            quoted.append(unit == u'"' || unit == u'\\' ? u"\\" : u"").append(1, unit);
    }
    return automation::To_UTF8(quoted + u'"');
}

std::string JSON_Of(const Members& members) {
    std::string text;
    for (const auto& [name, value] : members)
        text += (text.empty() ? "{" : ", ") + Quoted(name) + ": " + (value ? Quoted(*value) : "null");
    return text.empty() ? "{}" : text + '}';
}

} // namespace stores
