#include "toolkit/font.h"

#include <array>
#include <cmath>

namespace toolkit {

namespace {

// Advance widths in pixels of U+0020 to U+007E at 8.25 points and 96 dots per inch. The design widths of the
// dialog's auto-size labels are the sums of these.
constexpr std::array<std::uint8_t, 95> Widths{
    3,  4, 5, 9, 6, 11, 8, 3,  4, 4, 6, 9, 3, 4, 3, 5, // space to /
    6,  6, 6, 6, 6, 6,  6, 6,  6, 6, 4, 4, 9, 9, 9, 5, // 0 to ?
    10, 7, 6, 7, 7, 6,  6, 7,  7, 4, 5, 6, 5, 8, 7, 8, // @ to O
    6,  8, 7, 6, 6, 7,  6, 10, 6, 6, 6, 4, 5, 4, 9, 6, // P to _
    6,  6, 6, 5, 6, 6,  4, 6,  6, 2, 3, 5, 2, 8, 6, 6, // ` to o
    6,  6, 4, 5, 4, 6,  6, 8,  6, 6, 5, 5, 4, 5, 9,    // p to ~
};
constexpr int Line_Height = 13;
constexpr int Wide_Character = 11;
constexpr double Design_Points = 8.25;

// An accented Latin letter is as wide as its base letter.
constexpr String_View Base_Letters = u"AAAAAAMCEEEEIIIIDNOOOOOxOUUUUYPBaaaaaamceeeeiiiidnooooo-ouuuuypy";

int Width_Of(char16_t unit) {
    if (unit >= 0xC0 && unit <= 0xFF)
        unit = Base_Letters[unit - 0xC0U];
    if (unit >= u' ' && unit <= u'~')
        return Widths[unit - u' '];
    if (unit < u' ' || (unit >= 0xDC00 && unit <= 0xDFFF)) // control characters; the second half of a pair
        return 0;
    return unit >= 0x2E80 ? Wide_Character : 7;
}

} // namespace

String Drawn_Caption(String_View caption) {
    String drawn;
    drawn.reserve(caption.size());
    for (std::size_t at = 0; at < caption.size(); ++at) {
        if (caption[at] == u'&' && ++at == caption.size())
            break;
        drawn.push_back(caption[at]);
    }
    return drawn;
}

Size Design_Text_Size(const Font& font, String_View text) {
    int pixels = 0;
    for (const char16_t unit : text)
        pixels += Width_Of(unit) + (font.Weight >= 600 ? 1 : 0);
    const double scale = font.Points / Design_Points;
    auto scaled = [scale](int length) {
        return static_cast<Twips>(std::lround(length * scale)) * Twips_Per_Pixel;
    };
    return {scaled(pixels), scaled(Line_Height)};
}

} // namespace toolkit
