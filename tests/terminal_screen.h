// A tiny terminal: what a program's output looks like, for the few control sequences of a VT100.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace terminal_test {

class Tiny_Terminal {
public:
    Tiny_Terminal(int rows, int columns) { Resize(rows, columns); }
    void Resize(int rows, int columns) {
        cells.assign(static_cast<std::size_t>(rows), Row_Of_Cells(static_cast<std::size_t>(columns), " "));
    }

    void Feed(char byte) {
        if (!sequence.empty()) {
            sequence += byte;
            const bool is_longer = sequence.size() == 2 && (byte == '[' || byte == '(' || byte == ')');
            if (!is_longer && (sequence[1] != '[' || (byte >= '@' && byte <= '~')))
                Obey(std::exchange(sequence, {}));
        } else if (byte == '\033') {
            sequence = byte;
        } else if (static_cast<unsigned char>(byte) >= ' ') {
            Print(byte);
        } else {
            row += byte == '\n' ? 1 : 0;
            column = byte == '\r'   ? 0
                     : byte == '\b' ? column - 1
                     : byte == '\t' ? column / 8 * 8 + 8
                                    : column;
        }
    }

    std::string Text() const {
        std::string text;
        for (const auto& cells_of_row : cells) {
            for (const auto& cell : cells_of_row)
                text += cell;
            text += '\n';
        }
        return text;
    }

private:
    using Row_Of_Cells = std::vector<std::string>;

    std::string& Cell(int at_row, int at_column) {
        const int last_row = static_cast<int>(cells.size()) - 1;
        auto& line = cells[static_cast<std::size_t>(std::clamp(at_row, 0, last_row))];
        const int last = static_cast<int>(line.size()) - 1;
        return line[static_cast<std::size_t>(std::clamp(at_column, 0, last))];
    }
    // UTF-8, with combining accents; what begins with these bytes is wide in the tests.
    void Print(char byte) {
        const auto lead = static_cast<unsigned char>(byte);
        if ((lead & 0xC0) == 0x80 || lead == 0xCC) {
            Cell(row, printed) += byte;
            return;
        }
        printed = column;
        Cell(row, column++) = byte;
        if (lead > 0xE2)
            Cell(row, column++) = "";
    }
    void Erase(int from_row, int from, int to_row, int to) {
        for (int at = from_row; at <= to_row; ++at)
            for (int cell = at == from_row ? from : 0; cell < (at == to_row ? to : Columns()); ++cell)
                Cell(at, cell) = " ";
    }
    int Columns() const { return static_cast<int>(cells.front().size()); }
    void Obey(const std::string& whole) {
        const int first = whole.size() > 2 ? std::atoi(whole.c_str() + 2) : 0;
        const auto semicolon = whole.find(';');
        const int second = semicolon == std::string::npos ? 0 : std::atoi(whole.c_str() + semicolon + 1);
        if (whole == "\033M")
            --row;
        if (whole[1] != '[')
            return;
        const char last = whole.back();
        const int count = std::max(first, 1);
        row += last == 'B' ? count : last == 'A' ? -count : 0;
        column += last == 'C' ? count : last == 'D' ? -count : 0;
        if (last == 'H') {
            row = count - 1;
            column = std::max(second, 1) - 1;
        }
        if (last == 'J')
            Erase(row, column, static_cast<int>(cells.size()) - 1, Columns());
        if (last == 'K' && first == 1)
            Erase(row, 0, row, column + 1);
        else if (last == 'K')
            Erase(row, column, row, Columns());
    }

    std::vector<Row_Of_Cells> cells;
    std::string sequence;
    int row = 0;
    int column = 0;
    int printed = 0; // the column of the last character
};

} // namespace terminal_test
