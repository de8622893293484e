// Types of the persisted format, and the values that their texts stand for.
// Pure functions, callable from any thread; none depends on the process locale.
#pragma once

#include <optional>
#include <string_view>

#include "automation/variant.h"

namespace recordset {

// A text is never refused; every other type refuses what is no value of it.
using Decoder = std::optional<automation::Variant> (*)(std::string_view text);

// The decoder of a type by its name in the schema. A name that is not known, and none at all, is text.
Decoder Decoder_Of(std::string_view type_name);

// What an attribute holds: an empty one is an empty text whatever its field's type.
std::optional<automation::Variant> Decoded_As(Decoder type, std::string_view attribute);

// The decoder of texts: what it is given needs no check.
std::optional<automation::Variant> Decoded_Text(std::string_view utf8);

} // namespace recordset
