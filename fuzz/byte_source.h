// Decisions out of a fuzzer's bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

class Byte_Source {
public:
    Byte_Source(const std::uint8_t* data, std::size_t size) : at(data), end(data + size) {}

    bool Is_Empty() const { return at == end; }
    std::size_t Below(std::size_t bound) { return Byte() % bound; }
    // As many characters, mostly such as stand in numbers and dial strings.
    std::u16string Text(std::size_t characters) {
        static const std::u16string usual = u"0123456789012345678900  ++--,,..eE##!!**A\t\u00C4\u2003";
        std::u16string text;
        while (characters-- > 0) {
            const std::size_t choice = Byte();
            text += choice < 128
                        ? usual[choice % usual.size()]
                        : static_cast<char16_t>((choice & 1U) << 15U | (choice & 2U) << 11U | Byte());
        }
        return text;
    }

private:
    std::uint8_t Byte() { return at == end ? std::uint8_t{0} : *at++; }

    const std::uint8_t* at;
    const std::uint8_t* const end;
};

} // namespace fuzz
