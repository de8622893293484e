// What the build makes of the files of this folder. Both lists are in ascending order of ids.
#pragma once

#include <span>
#include <string_view>

#include "automation/text.h"

namespace resources {

struct Embedded_Text {
    automation::Long Id;
    automation::String_View Text;
};

struct Embedded_Picture {
    automation::Long Id;
    std::basic_string_view<unsigned char> Bytes;
};

std::span<const Embedded_Text> Embedded_Texts();
std::span<const Embedded_Picture> Embedded_Pictures();

} // namespace resources
