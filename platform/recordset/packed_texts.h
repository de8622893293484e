// Values of the own shape on their way into a row store: taken from UTF-16 up to their closing quote, kept as
// UTF-8, a full buffer at a time.
#pragma once

#include <array>
#include <optional>

#include "row_store.h"

namespace recordset {

class Packed_Texts {
public:
    explicit Packed_Texts(Row_Store& store) : store(store) {}

    // Takes a value and the quote behind it from the front of `rest`. False when there is no such quote, or
    // something before it that the writer does not write; the texts are then of no more use.
    bool Take(automation::String_View& rest);
    // Where the value that was taken last begins in the store, once it is flushed.
    std::uint32_t Place() const { return place; }
    // The same value until the next is taken; nothing when it is long.
    std::optional<std::string_view> Short_Value() const;
    void Flush();

private:
    using Unit = const char16_t*;
    Unit Take_Plain(Unit at, Unit end);
    Unit Take_Escape(Unit at, Unit end);
    Unit Take_Beyond_ASCII(Unit at, Unit end);
    std::size_t Room() const { return static_cast<std::size_t>(buffer.data() + buffer.size() - used); }
    void Make_Room(std::size_t bytes) {
        if (Room() < bytes)
            Flush();
    }

    Row_Store& store;
    std::uint32_t place = 0;
    char* value = nullptr; // begin of the value in the buffer; null when it did not stay there
    std::array<char, 8192> buffer;
    char* used = buffer.data();
};

} // namespace recordset
