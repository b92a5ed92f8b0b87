// Texts that are one whole number from end to end.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tonvane {

// Digits, behind a minus where the type has a sign; nothing for anything else and for numbers that
// the type does not hold.
template <std::integral Integer>
std::optional<Integer> ParseWhole(std::string_view text, int base = 10) {
    Integer value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

// Nothing but 1 to `mostDigits` (at most 8) hexadecimal digits.
std::optional<uint32_t> ParseHexDigits(std::string_view text, size_t mostDigits);

// Takes 0x or 0X away from the start of a text; whether it was there.
bool TakeHexPrefix(std::string_view& text);

}  // namespace tonvane
