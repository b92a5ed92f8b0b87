// Letters, digits and blanks of ASCII, whatever the locale.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tonvane {

constexpr bool IsDigit(int c) {
    return c >= '0' && c <= '9';
}

constexpr char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string LowerCase(std::string text);

// Whether two texts are the same but for the case of their letters.
bool IsSameWord(std::string_view a, std::string_view b);

// The text without the blanks at its ends, and its pieces between blanks. What counts as a blank
// differs between formats.
std::string_view Trim(std::string_view text, std::string_view blanks);
std::vector<std::string_view> SplitAtBlanks(std::string_view text, std::string_view blanks);

}  // namespace tonvane
