#include "automation/text_builder.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace automation {

namespace {

constexpr std::size_t Most_Units = std::numeric_limits<std::uint32_t>::max();

// A block is one piece of the C library's memory; a large one grows without being copied.
Automation_Block* Resized(Automation_Block* block, std::size_t units) {
    return static_cast<Automation_Block*>(
        std::realloc(block, sizeof(Automation_Block) + units * sizeof(char16_t)));
}

} // namespace

void Text_Builder::Grow(std::size_t units) {
    if (units > Most_Units - length)
        throw std::bad_alloc();
    const std::size_t wanted = std::min(std::max(length + units, 2 * capacity), Most_Units);
    auto* const grown = Resized(block, wanted);
    if (!grown)
        throw std::bad_alloc();
    block = grown;
    capacity = wanted;
}

Text Text_Builder::Finish() {
    Text_Builder done(std::move(*this));
    if (done.length == 0)
        return {};
    if (auto* const fitting = Resized(done.block, done.length))
        done.block = fitting;
    done.block->Length = static_cast<std::uint32_t>(done.length);
    return Text::Adopt(std::exchange(done.block, nullptr));
}

} // namespace automation
