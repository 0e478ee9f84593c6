// Whole-text number parsing for the command line and the engines' output: a value only when
// every character of the text belongs to the number.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace match {

template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number value{};
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || text.empty()) return std::nullopt;
    return value;
}

}  // namespace match
