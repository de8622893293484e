// Rows as a reader leaves them: the fields, and for each row the texts of its values, packed.
//
// A value costs eight bytes and its text in UTF-8; a null costs nothing, so that the memory of the rows is
// linear in what was read. Types are applied when a value is asked for: Append has checked that they fit.
// A store belongs to one thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "field_value.h"

namespace recordset {

class Row_Store {
public:
    struct Field {
        automation::String Name;
        Decoder Decode;
        friend bool operator==(const Field&, const Field&) = default;
    };
    // A value that is not null: its field and where its text begins.
    struct Cell {
        std::uint32_t Field;
        std::uint32_t Text;
        friend bool operator==(const Cell&, const Cell&) = default;
    };
    using Cells = std::vector<Cell>; // of one row, by ascending field

    void Add_Field(Field field) { fields.push_back(std::move(field)); }
    // Keeps a text and gives its place. The text holds no NUL.
    std::uint32_t Keep(std::string_view text);
    // The same in pieces, whose last ends with NUL.
    void Append(std::string_view piece) { texts.append(piece); }
    std::uint32_t Text_End() const { return static_cast<std::uint32_t>(texts.size()); }
    // Every cell's text is one that was kept and that its field's type can hold.
    void Add_Row(const Cells& cells);
    // The same, cell by cell.
    void Add_Cell(Cell cell) { cells.push_back(cell); }
    void End_Row() { row_ends.push_back(static_cast<std::uint32_t>(cells.size())); }
    void Reserve(std::size_t bytes, std::size_t values) {
        texts.reserve(bytes);
        cells.reserve(values);
    }
    // Gives back what was reserved in advance.
    void Shrink();

    const std::vector<Field>& Fields() const { return fields; }
    std::size_t Row_Count() const { return row_ends.size(); }
    automation::Variant Value(std::size_t row, std::size_t field) const;
    const char* Text(std::uint32_t place) const { return texts.c_str() + place; }

    friend bool operator==(const Row_Store&, const Row_Store&) = default;

private:
    std::vector<Field> fields;
    std::string texts; // each behind the other, ended by NUL
    Cells cells;       // of all rows
    std::vector<std::uint32_t> row_ends;
};

} // namespace recordset
