#include "text_cells.h"

#include <algorithm>
#include <wchar.h>

#include "automation/text.h"

namespace terminal {

namespace {

// The character at `at`; a lone surrogate stands for itself and cannot be shown.
wchar_t Character_At(String_View text, std::size_t at) {
    const char16_t unit = text[at];
    const bool pair =
        (unit & 0xFC00U) == 0xD800 && at + 1 < text.size() && (text[at + 1] & 0xFC00U) == 0xDC00;
    return pair ? static_cast<wchar_t>(0x10000 + ((unit & 0x3FF) << 10) + (text[at + 1] & 0x3FF))
                : static_cast<wchar_t>(unit);
}

// Not what would hide or turn what stands beside it; joiners only change how their neighbours look.
bool Is_Harmless(wchar_t character) {
    constexpr wchar_t non_joiner = 0x200C, joiner = 0x200D;
    return character == non_joiner || character == joiner ||
           !automation::Is_Unseen(static_cast<char32_t>(character));
}

wchar_t Replacement() {
    return wcwidth(0xFFFD) == 1 ? 0xFFFD : L'?';
}

Cluster Shown_Alone(std::size_t at, std::size_t length, wchar_t character, int width) {
    if (width == 0) // a mark without a base
        return {at, length, 1, {L' ', character}};
    return {at, length, std::max(width, 1), std::wstring(1, width < 0 ? Replacement() : character)};
}

} // namespace

std::vector<Cluster> Clusters(String_View text) {
    constexpr std::size_t Most_In_A_Cell = 5;
    std::vector<Cluster> clusters;
    for (std::size_t at = 0; at < text.size();) {
        const wchar_t character = Character_At(text, at);
        const std::size_t length = character > 0xFFFF ? 2 : 1;
        const int width = Is_Harmless(character) ? wcwidth(character) : -1;
        if (width == 0 && !clusters.empty()) {
            Cluster& base = clusters.back();
            base.Length += length;
            if (base.Shown.size() < Most_In_A_Cell)
                base.Shown.push_back(character);
        } else {
            clusters.push_back(Shown_Alone(at, length, character, width));
        }
        at += length;
    }
    return clusters;
}

int Columns(String_View text) {
    int columns = 0;
    for (const Cluster& cluster : Clusters(text))
        columns += cluster.Columns;
    return columns;
}

std::size_t Cluster_Before(String_View text, std::size_t position) {
    std::size_t before = 0;
    for (const Cluster& cluster : Clusters(text))
        if (cluster.Start < position)
            before = cluster.Start;
    return before;
}

std::size_t Cluster_Behind(String_View text, std::size_t position) {
    for (const Cluster& cluster : Clusters(text))
        if (cluster.Start + cluster.Length > position)
            return cluster.Start + cluster.Length;
    return text.size();
}

namespace {

void Wrap_Line(String_View line, int columns, std::vector<String>& lines) {
    while (Columns(line) > columns) {
        std::size_t end = 0;   // of what fits
        std::size_t blank = 0; // the last one in it
        int used = 0;
        for (const Cluster& cluster : Clusters(line)) {
            if (line[cluster.Start] == u' ')
                blank = cluster.Start;
            if ((used += cluster.Columns) > columns)
                break;
            end = cluster.Start + cluster.Length;
        }
        const std::size_t cut = blank > 0 ? blank : std::max<std::size_t>(end, 1);
        lines.emplace_back(line.substr(0, cut));
        line.remove_prefix(blank > 0 ? cut + 1 : cut);
    }
    lines.emplace_back(line);
}

} // namespace

std::vector<String> Wrapped(String_View text, int columns) {
    std::vector<String> lines;
    for (;;) {
        const std::size_t end = text.find_first_of(u"\r\n");
        Wrap_Line(text.substr(0, end), columns, lines);
        if (end == String_View::npos)
            return lines;
        text.remove_prefix(end + (text.substr(end, 2) == u"\r\n" ? 2 : 1));
    }
}

String Symbol(String_View symbol, String_View stand_in) {
    const bool known =
        std::all_of(symbol.begin(), symbol.end(), [](char16_t unit) { return wcwidth(unit) == 1; });
    return String(known ? symbol : stand_in);
}

Marked_Caption::Marked_Caption(String_View caption) : Text(toolkit::Drawn_Caption(caption)) {
    std::size_t drawn = 0;
    for (std::size_t at = 0; at + 1 < caption.size() && !Access; ++at, ++drawn)
        if (caption[at] == u'&' && caption[++at] != u'&')
            Access = drawn;
}

bool Marked_Caption::Answers(String_View letter) const {
    return Access &&
           automation::Equal_Ignoring_Case(String_View(Text).substr(*Access, letter.size()), letter);
}

} // namespace terminal
