// Decimal numbers of command lines and scripts: an optional "-" and digits, nothing else. Pure functions.
#pragma once

#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

namespace host {

// Nothing when `text` is no number or out of the range of Value.
template <typename Value>
std::optional<Value> Decimal(std::string_view text) {
    Value value{};
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || behind != end)
        return {};
    return value;
}

// As Decimal, but a number out of range becomes the nearest one in it.
template <typename Value>
std::optional<Value> Nearest_Decimal(std::string_view text) {
    Value value{};
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, value);
    if (behind != end || error == std::errc::invalid_argument)
        return {};
    if (error == std::errc::result_out_of_range)
        return text.front() == '-' ? std::numeric_limits<Value>::min() : std::numeric_limits<Value>::max();
    return value;
}

} // namespace host
