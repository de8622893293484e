// The types of the values that the editor's procedures work with.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace automation {

using Integer = std::int16_t;
using Boolean = std::int16_t;
constexpr Boolean True = -1;
constexpr Boolean False = 0;
using Long = std::int32_t;
using String = std::u16string;
using String_View = std::u16string_view;

} // namespace automation
