#include "process/visible_text.h"

#include <sstream>

#include <utility>

#include "automation/text.h"

namespace host {

namespace {

std::string Escaped(char16_t unit) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text = "\\u";
    for (unsigned shift = 16; shift > 0; shift -= 4)
        text += digits[(static_cast<unsigned>(unit) >> (shift - 4)) & 15U];
    return text;
}

std::string Visible(automation::String_View text, automation::String_View escaped,
                    automation::String_View kept = {}) {
    std::string visible;
    automation::String plain;
    const auto flush = [&] { visible += automation::To_UTF8(std::exchange(plain, {})); };
    for (const char16_t unit : text) {
        const bool is_kept = kept.find(unit) != automation::String_View::npos;
        const bool is_unseen = !is_kept && automation::Is_Unseen(unit);
        if (!is_unseen && escaped.find(unit) == automation::String_View::npos) {
            plain += unit;
            continue;
        }
        flush();
        visible += is_unseen ? Escaped(unit) : std::string("\\") + static_cast<char>(unit);
    }
    flush();
    return visible;
}

} // namespace

std::string Visible(automation::String_View text) {
    return Visible(text, u"\"\\");
}

std::string Visible_Text(const std::string& text) {
    return Visible(automation::From_UTF8_Replacing(text), u"");
}

std::string Visible_Lines(const std::string& text) {
    return Visible(automation::From_UTF8_Replacing(text), u"", u"\n\t");
}

void Print_Visibly(std::ostream& out, const std::function<void(std::ostream&)>& report) {
    std::ostringstream text;
    const auto print = [&] { out << Visible_Lines(text.str()); };
    try {
        report(text);
    } catch (...) {
        print();
        throw;
    }
    print();
}

} // namespace host
