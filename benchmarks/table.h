// The table that the other ways of reading fill: the leanest that can answer the same questions as a
// recordset. The texts stand behind each other; of each value its column and place are kept.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace benchmarks {

struct Table {
    struct Cell {
        std::uint32_t Column;
        std::uint32_t Text;
    };
    std::string Texts;
    std::vector<Cell> Cells;
    std::vector<std::uint32_t> Row_Ends;

    void Add(std::uint32_t column, std::string_view text) {
        Cells.push_back({column, static_cast<std::uint32_t>(Texts.size())});
        Texts.append(text).push_back('\0');
    }
    void End_Row() { Row_Ends.push_back(static_cast<std::uint32_t>(Cells.size())); }
};

// A figure without its result is none.
inline void Require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "a benchmark did not get %s\n", what);
    std::exit(2);
}

} // namespace benchmarks
