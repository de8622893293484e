// Builds a large text that is to cross a module boundary where it will stay, so that it is never held twice.
// Belongs to one thread; throws std::bad_alloc only.
#pragma once

#include <cstring>

#include "automation/failure.h"

namespace automation {

class Text_Builder {
public:
    Text_Builder() noexcept = default;
    Text_Builder(Text_Builder&& other) noexcept
        : block(std::exchange(other.block, nullptr)), length(std::exchange(other.length, 0)),
          capacity(std::exchange(other.capacity, 0)) {}
    Text_Builder& operator=(Text_Builder other) noexcept {
        std::swap(block, other.block);
        std::swap(length, other.length);
        std::swap(capacity, other.capacity);
        return *this;
    }
    ~Text_Builder() { Automation_Free(block); }

    void Append(String_View text) {
        if (text.empty())
            return;
        std::memcpy(Room(text.size()), text.data(), text.size() * sizeof(char16_t));
        Extend(text.size());
    }
    void Append(char16_t unit) { Append({&unit, 1}); }

    // Room for so many units behind the text, of which Extend makes some a part of it.
    char16_t* Room(std::size_t units) {
        if (units > capacity - length)
            Grow(units);
        return Units() + length;
    }
    void Extend(std::size_t units) noexcept { length += units; }

    std::size_t Length() const noexcept { return length; }
    void Cut(std::size_t shorter) noexcept { length = shorter; }

    // The builder is empty afterwards.
    Text Finish();

private:
    char16_t* Units() const { return reinterpret_cast<char16_t*>(block + 1); }
    void Grow(std::size_t units);

    Automation_Block* block = nullptr;
    std::size_t length = 0;
    std::size_t capacity = 0; // both in code units
};

} // namespace automation
