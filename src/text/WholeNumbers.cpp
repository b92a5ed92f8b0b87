#include "text/WholeNumbers.h"

namespace tonvane {

std::optional<uint32_t> ParseHexDigits(std::string_view text, size_t mostDigits) {
    return text.size() <= mostDigits ? ParseWhole<uint32_t>(text, 16) : std::nullopt;
}

bool TakeHexPrefix(std::string_view& text) {
    const bool prefixed = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(prefixed ? 2 : 0);
    return prefixed;
}

}  // namespace tonvane
