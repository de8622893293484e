// Texts of the component: counted UTF-16, converted to UTF-8 only at the edges (files, SQL, JSON).
// Pure functions, callable from any thread.
#pragma once

#include <optional>

#include "automation/text_types.h"

namespace automation {

// Strict: nothing when `utf8` is not well-formed UTF-8.
std::optional<String> From_UTF8(std::string_view utf8);

// The same over a text that is there already, whose room is used; false when it is not, and the text is then
// of no use.
bool Convert_UTF8(std::string_view utf8, String& text);

// What is not well-formed becomes U+FFFD.
String From_UTF8_Replacing(std::string_view utf8);

// A lone surrogate becomes U+FFFD, so that the result is always well-formed.
std::string To_UTF8(String_View text);

// False when a surrogate stands without its partner.
bool Is_Well_Formed(String_View text);

// Whether a person sees nothing of the character, but what it does: it moves the cursor, hides, turns or
// joins text, or is the first half of such a pair.
bool Is_Unseen(char32_t character);

// Only the space character counts, as everywhere in the editor's fields.
String Trim_Right(String_View text);
String Trim_Left(String_View text);

// Keys of collections and names of fields and classes are compared without regard to case.
String Case_Folded(String_View text);
bool Equal_Ignoring_Case(String_View left, String_View right);

} // namespace automation
