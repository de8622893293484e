#include "automation/number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "automation/failure.h"

namespace automation {

namespace {

bool Is_Digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}
bool Is_Sign(char16_t unit) {
    return unit == u'+' || unit == u'-';
}

// Reads a number from left to right and keeps it in the plain form that from_chars takes.
class Number_Scanner {
public:
    explicit Number_Scanner(String_View text) : rest(text) {}

    std::optional<double> Scan() {
        while (!rest.empty() && rest.front() == u' ')
            rest.remove_prefix(1);
        while (!rest.empty() && rest.back() == u' ')
            rest.remove_suffix(1);
        Take_Sign();
        if (!Take_Mantissa() || !Take_Exponent())
            return std::nullopt;
        if (!sign_seen)
            Take_Sign();
        return rest.empty() ? Value() : std::nullopt;
    }

private:
    void Take_Sign() {
        if (rest.empty() || !Is_Sign(rest.front()))
            return;
        sign_seen = true;
        negative = rest.front() == u'-';
        rest.remove_prefix(1);
    }

    bool Take_Digits() {
        const std::size_t before = plain.size();
        while (!rest.empty() && Is_Digit(rest.front()))
            Take_One();
        return plain.size() > before;
    }

    void Take_One() {
        plain.push_back(static_cast<char>(rest.front()));
        rest.remove_prefix(1);
    }

    bool Take_Mantissa() {
        bool digits = Take_Digits();
        while (digits && !rest.empty() && rest.front() == u',') {
            rest.remove_prefix(1);
            Take_Digits();
        }
        if (!digits)
            plain.push_back('0');
        if (!rest.empty() && rest.front() == u'.') {
            Take_One();
            digits = Take_Digits() || digits;
            if (plain.back() == '.')
                plain.pop_back();
        }
        return digits;
    }

    bool Take_Exponent() {
        if (rest.empty() || (rest.front() != u'e' && rest.front() != u'E'))
            return true;
        rest.remove_prefix(1);
        plain.push_back('e');
        if (!rest.empty() && Is_Sign(rest.front()))
            Take_One();
        if (plain.back() == '+')
            plain.pop_back();
        return Take_Digits();
    }

    std::optional<double> Value() const {
        double value = 0;
        const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
        if (error == std::errc::result_out_of_range) {
            if (Is_Large())
                return std::nullopt;
            value = 0; // too small for a double, not too large
        }
        return negative ? -value : value;
    }

    // Whether the first significant digit stands before the decimal point once the exponent is applied.
    bool Is_Large() const {
        const std::string_view text = plain;
        const std::size_t mantissa_end = std::min(text.find('e'), text.size());
        const std::size_t point = std::min(text.find('.'), mantissa_end);
        const std::size_t first = text.find_first_not_of("0.");
        std::int64_t exponent = 0;
        if (mantissa_end < text.size()) {
            const auto* from = text.data() + mantissa_end + 1;
            const auto [end, error] = std::from_chars(from, text.data() + text.size(), exponent);
            if (error == std::errc::result_out_of_range)
                return *from != '-';
        }
        constexpr std::int64_t limit = std::int64_t{1} << 48; // beyond the length of every text
        exponent = std::clamp(exponent, -limit, limit);
        return static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) + exponent > 0;
    }

    String_View rest;
    std::string plain;
    bool sign_seen = false;
    bool negative = false;
};

template <typename Result>
Result Rounded(double value) {
    const double rounded = std::nearbyint(value); // the default rounding mode takes halves to even
    if (!(rounded >= std::numeric_limits<Result>::min() && rounded <= std::numeric_limits<Result>::max()))
        Raise(run_time::Overflow);
    return static_cast<Result>(rounded);
}

template <typename Result>
Result In_Range(std::int64_t value) {
    if (value < std::numeric_limits<Result>::min() || value > std::numeric_limits<Result>::max())
        Raise(run_time::Overflow);
    return static_cast<Result>(value);
}

} // namespace

std::optional<double> Recognised_Number(String_View text) {
    return Number_Scanner(text).Scan();
}

double To_Double(String_View text) {
    const auto value = Recognised_Number(text);
    if (!value)
        Raise(run_time::Type_Mismatch);
    return *value;
}

Integer To_Integer(double value) {
    return Rounded<Integer>(value);
}
Long To_Long(double value) {
    return Rounded<Long>(value);
}

Integer Add(Integer left, Integer right) {
    return In_Range<Integer>(left + right);
}
Integer Subtract(Integer left, Integer right) {
    return In_Range<Integer>(left - right);
}
Integer Multiply(Integer left, Integer right) {
    return In_Range<Integer>(std::int64_t{left} * right);
}
Long Add(Long left, Long right) {
    return In_Range<Long>(std::int64_t{left} + right);
}

String Decimal_Text(std::int64_t value) {
    const std::string digits = std::to_string(value);
    return String(digits.begin(), digits.end());
}

} // namespace automation
