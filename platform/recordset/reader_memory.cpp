#include "reader_memory.h"

#include <cstdlib>

namespace recordset {

namespace {

// Texts were found to need up to 26 bytes a unit: many attributes, each with a prefix, in one element.
constexpr std::size_t Bytes_A_Unit = 64;
constexpr std::size_t Bytes_For_Any = std::size_t{4} << 20U;

// Asked for in all, whether freed since or not. The parser's memory calls carry no context of ours.
thread_local std::size_t left = 0;

bool Granted(std::size_t size) {
    if (size > left)
        return false;
    left -= size;
    return true;
}

void* Allocate(std::size_t size) {
    return Granted(size) ? std::malloc(size) : nullptr;
}

void* Resize(void* block, std::size_t size) {
    return Granted(size) ? std::realloc(block, size) : nullptr;
}

} // namespace

Reader_Memory::Reader_Memory(std::size_t text_length) {
    left = Bytes_For_Any + text_length * Bytes_A_Unit;
}

Reader_Memory::~Reader_Memory() {
    left = 0;
}

const XML_Memory_Handling_Suite* Reader_Memory::Suite() const {
    static const XML_Memory_Handling_Suite suite{Allocate, Resize, std::free};
    return &suite;
}

} // namespace recordset
