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
    };
    // A value that is not null: its field and where its text begins.
    struct Cell {
        std::uint32_t Field;
        std::uint32_t Text;
    };
    using Cells = std::vector<Cell>; // of one row, by ascending field

    void Add_Field(Field field) { fields.push_back(std::move(field)); }
    // Keeps a text and gives its place. The text holds no NUL.
    std::uint32_t Keep(std::string_view text);
    // Every cell's text is one that was kept and that its field's type can hold.
    void Add_Row(const Cells& cells);
    // Gives back what growing has reserved in advance.
    void Shrink();

    const std::vector<Field>& Fields() const { return fields; }
    std::size_t Row_Count() const { return row_ends.size(); }
    automation::Variant Value(std::size_t row, std::size_t field) const;

private:
    std::vector<Field> fields;
    std::string texts; // each behind the other, ended by NUL
    Cells cells;       // of all rows
    std::vector<std::uint32_t> row_ends;
};

} // namespace recordset
