// What a form's handlers have made of a person's edit, in words.
#pragma once

#include "toolkit/control.h"

namespace toolkit {

// Empty when the field holds what was wanted; otherwise one line that says what became of the edit and, if
// the field tells it, what a text must be. `before`: what the field held.
String Answer_To_Edit(const Text_Control& field, String_View before, String_View wanted);

} // namespace toolkit
