// Words as the bytes of a register, in the order of the wire.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace tonvane {

// Words of the longest register.
constexpr int32_t mostRegisterWords = 5;
constexpr int32_t mostRegisterBytes = 4 * mostRegisterWords;

// How many bytes each word has in a register of `length` bytes: four at a time, what is left in the
// last one, 0 for the rest. 8 gives 4, 4, 0, 0, 0.
std::array<int32_t, mostRegisterWords> WordLengths(int32_t length);

// Fills `bytes`, at most 20, from as many words as it takes: each word's low bytes, most
// significant first. `words` has at least that many.
void WordsToBytes(std::span<const int32_t> words, std::span<uint8_t> bytes);

// The words of at most 20 bytes; those that have no bytes are 0.
std::array<int32_t, mostRegisterWords> BytesToWords(std::span<const uint8_t> bytes);

}  // namespace tonvane
