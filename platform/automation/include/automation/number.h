// Number recognition, conversions and the checked 16- and 32-bit arithmetic of the editor.
// Failures: 13 for a text that is no number, 6 for a value out of range. Thread-safe.
#pragma once

#include <optional>

#include "automation/text.h"

namespace automation {

// The value of a text by the platform's general number recognition, which does not depend on the
// locale: blanks around, one sign before or after the digits, group separators "," in the integer
// part, a decimal point ".", an exponent. Nothing when the text is no number.
std::optional<double> Recognised_Number(String_View text);

inline bool Is_Numeric(String_View text) {
    return Recognised_Number(text).has_value();
}

double To_Double(String_View text);

// Halves are rounded to the even neighbour before the range is checked.
Integer To_Integer(double value);
Long To_Long(double value);
inline Integer To_Integer(String_View text) {
    return To_Integer(To_Double(text));
}
inline Long To_Long(String_View text) {
    return To_Long(To_Double(text));
}

Integer Add(Integer left, Integer right);
Integer Subtract(Integer left, Integer right);
Integer Multiply(Integer left, Integer right);
Long Add(Long left, Long right);

// Decimal text, with a leading "-" when negative.
String Decimal_Text(std::int64_t value);

[[noreturn]] void Raise_Missing_Resource(Long resource_id);

} // namespace automation
