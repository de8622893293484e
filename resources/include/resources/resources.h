// The texts and pictures that the editor carries: string table, navigation bitmaps, icon.
//
// They come from the files of this folder and are part of the program; shell/replaced_strings.h puts another
// table in the place of the texts. Callable from any thread.
#pragma once

#include <string_view>

#include "automation/text.h"

namespace resources {

// A language has this many texts; language n has the ids (n - 1) * 59 to (n - 1) * 59 + 58.
constexpr automation::Long Texts_Per_Language = 59;

// The text, which may be empty; 326 when the table has none under the id.
automation::String Load_String(automation::Long id);

constexpr automation::Long Icon = 0;
// The bytes of a bitmap file (1 first, 2 previous, 3 next, 4 last) or of the icon file; empty when there is
// none under the id. They live as long as the program.
std::basic_string_view<unsigned char> Load_Picture(automation::Long id);

} // namespace resources
