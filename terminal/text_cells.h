// Texts as a terminal shows them: characters of no, one or two columns, by the calling thread's locale.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "toolkit/font.h"

namespace terminal {

using toolkit::String;
using toolkit::String_View;

// What the caret steps over: a character with the combining ones behind it.
struct Cluster {
    std::size_t Start; // in code units
    std::size_t Length;
    int Columns; // 1 or 2
    std::wstring Shown;
};

// What the locale cannot show becomes a replacement character of one column.
std::vector<Cluster> Clusters(String_View text);
int Columns(String_View text);

// The caret's neighbours.
std::size_t Cluster_Before(String_View text, std::size_t position);
std::size_t Cluster_Behind(String_View text, std::size_t position);

// Broken at blanks and line ends into lines of at most `columns`.
std::vector<String> Wrapped(String_View text, int columns);

// The symbol, or its stand-in where the locale has none of it.
String Symbol(String_View symbol, String_View stand_in);

// A caption without the mark of its access key, and where the key's letter stands in it.
struct Marked_Caption {
    explicit Marked_Caption(String_View caption);
    String Text;
    std::optional<std::size_t> Access;
    bool Answers(String_View letter) const;
};

} // namespace terminal
