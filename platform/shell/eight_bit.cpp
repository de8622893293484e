#include "shell/eight_bit.h"

#include "automation/text.h"

namespace shell {

automation::String From_Eight_Bit(std::string_view bytes) {
    if (auto text = automation::From_UTF8(bytes))
        return std::move(*text);
    automation::String text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += value < 0x80 ? static_cast<char16_t>(value) : u'\xFFFD';
    }
    return text;
}

} // namespace shell
