// Fonts and the size of a text in them.
#pragma once

#include <cstdint>

#include "automation/text.h"

namespace toolkit {

using automation::String;
using automation::String_View;

// Lengths are twips, 1/1440 inch: 15 twips are a pixel at 96 dots per inch.
using Twips = std::int32_t;
constexpr Twips Twips_Per_Pixel = 15;

struct Size {
    Twips Width;
    Twips Height;
    friend bool operator==(const Size&, const Size&) = default;
};

struct Font {
    String Name = u"Tahoma";
    double Points = 8.25;
    int Weight = 400;
    friend bool operator==(const Font&, const Font&) = default;
};

// A caption as it is drawn: "&" marks the access key and is not drawn, "&&" is one "&".
String Drawn_Caption(String_View caption);

// The size of one line in the design font, by that font's advance widths at 96 dots per inch, scaled with the
// size. Labels are measured with it whether or not the font is installed, so that every Display agrees
// about the layout.
Size Design_Text_Size(const Font& font, String_View text);

} // namespace toolkit
