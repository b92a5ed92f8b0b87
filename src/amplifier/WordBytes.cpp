#include "amplifier/WordBytes.h"

#include <algorithm>

namespace tonvane {

std::array<int32_t, mostRegisterWords> WordLengths(int32_t length) {
    std::array<int32_t, mostRegisterWords> lengths{};
    for (int32_t& bytes : lengths) {
        bytes = std::clamp(length, 0, 4);
        length -= bytes;
    }
    return lengths;
}

void WordsToBytes(std::span<const int32_t> words, std::span<uint8_t> bytes) {
    const auto lengths = WordLengths(static_cast<int32_t>(bytes.size()));
    size_t next = 0;
    for (size_t i = 0; i < lengths.size(); ++i) {
        for (int32_t left = lengths[i]; left > 0; --left) {
            const auto bits = static_cast<uint32_t>(words[i]);
            bytes[next++] = static_cast<uint8_t>(bits >> 8 * (left - 1));
        }
    }
}

std::array<int32_t, mostRegisterWords> BytesToWords(std::span<const uint8_t> bytes) {
    const auto lengths = WordLengths(static_cast<int32_t>(bytes.size()));
    std::array<int32_t, mostRegisterWords> words{};
    size_t next = 0;
    for (size_t i = 0; i < words.size(); ++i) {
        uint32_t bits = 0;
        for (int32_t left = lengths[i]; left > 0; --left) {
            bits = bits << 8U | bytes[next++];
        }
        words[i] = static_cast<int32_t>(bits);
    }
    return words;
}

}  // namespace tonvane
