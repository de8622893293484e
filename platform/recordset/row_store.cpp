#include "row_store.h"

#include <algorithm>

namespace recordset {

std::uint32_t Row_Store::Keep(std::string_view text) {
    const auto place = static_cast<std::uint32_t>(texts.size());
    texts.append(text).push_back('\0');
    return place;
}

void Row_Store::Add_Row(const Cells& row) {
    cells.insert(cells.end(), row.begin(), row.end());
    End_Row();
}

namespace {

// What is nearly full is not copied for the rest.
template <typename Content>
void Give_Back(Content& content) {
    if (content.capacity() - content.size() > content.size() / 4)
        content.shrink_to_fit();
}

} // namespace

void Row_Store::Shrink() {
    Give_Back(texts);
    Give_Back(cells);
    Give_Back(row_ends);
}

automation::Variant Row_Store::Value(std::size_t row, std::size_t field) const {
    const Cell* const first = cells.data() + (row == 0 ? 0 : row_ends[row - 1]);
    const Cell* const end = cells.data() + row_ends[row];
    const Cell* const found = std::lower_bound(
        first, end, field, [](const Cell& cell, std::size_t wanted) { return cell.Field < wanted; });
    if (found == end || found->Field != field)
        return automation::Variant::Null();
    return *Decoded_As(fields[field].Decode, Text(found->Text));
}

} // namespace recordset
