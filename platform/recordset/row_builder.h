// Builds a row store from the elements of a persisted recordset, in the order in which they stand.
//
// Members that return a bool return false when what they are given makes the text unreadable; the builder is
// then of no more use. Belongs to one thread.
#pragma once

#include <deque>

#include "expanded_name.h"
#include "row_store.h"

namespace recordset {

class Row_Builder {
public:
    bool Begin_Row_Type();
    bool Begin_Field(Attributes attributes);
    void Set_Field_Type(Attributes attributes);
    void End_Field();
    bool End_Row_Type();

    bool Add_Row(Attributes attributes);

    // Of pending changes: the rows before, in their order, then the same rows as they are now.
    bool Add_Original(Attributes attributes);
    bool Add_Changed(Attributes attributes);
    bool End_Update();

    bool Is_Complete() const { return row_type == Row_Type::Complete; }
    Row_Store Finish() &&;

private:
    enum class Row_Type { Missing, Begun, Complete };
    using Column = std::uint32_t;
    static constexpr Column No_Column = 0xFFFFFFFF;

    static constexpr std::uint32_t No_Text = 0xFFFFFFFF;

    bool Read_Row(Attributes attributes);
    void Sort_Row();
    bool Read_Value(Column column, std::string_view text);
    void Read_Forced_Nulls(std::string_view names);
    bool Is_Column(Column column, const char* attribute) const;
    Column Column_Of(std::string_view attribute) const;

    Row_Type row_type = Row_Type::Missing;
    Row_Store store;
    Row_Store::Field field{};         // being described
    std::vector<std::string> columns; // the attribute that holds each field
    std::vector<Column> by_name;      // all columns, by the names of their attributes
    // The column that a row has begun with, and for each column the one that stood behind it: rows mostly
    // keep one order, at first that of the fields.
    std::vector<Column> followers;
    std::deque<Row_Store::Cells> originals; // that wait for their changed row
    Row_Store::Cells row;                   // of the element that was read last
    std::vector<std::uint32_t> texts;       // of the same element, by column
    Row_Store::Cells forced_nulls;          // of the same element; their texts mean nothing
};

} // namespace recordset
