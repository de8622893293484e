// The memory that the XML parser may ask for while it reads one text.
//
// The parser expands the prefix of every attribute to the whole namespace, so that a short text can ask for
// memory in the square of its length. It is told that there is none once it has asked for more than an honest
// text of that length can need.
#pragma once

#include <expat.h>

#include <cstddef>

namespace recordset {

// One at a time in a thread; the parser is created and freed while it lives.
class Reader_Memory {
public:
    explicit Reader_Memory(std::size_t text_length);
    ~Reader_Memory();
    Reader_Memory(const Reader_Memory&) = delete;
    Reader_Memory& operator=(const Reader_Memory&) = delete;

    const XML_Memory_Handling_Suite* Suite() const;
};

} // namespace recordset
