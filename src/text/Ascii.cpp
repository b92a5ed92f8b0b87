#include "text/Ascii.h"

#include <algorithm>

namespace tonvane {

std::string LowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return LowerCase(c); });
    return text;
}

bool IsSameWord(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

std::string_view Trim(std::string_view text, std::string_view blanks) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::vector<std::string_view> SplitAtBlanks(std::string_view text, std::string_view blanks) {
    std::vector<std::string_view> pieces;
    for (size_t start = text.find_first_not_of(blanks); start != std::string_view::npos;) {
        const size_t end = std::min(text.find_first_of(blanks, start), text.size());
        pieces.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(blanks, end);
    }
    return pieces;
}

}  // namespace tonvane
