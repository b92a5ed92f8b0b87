// Second-order sections, and as the amplifier takes them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace tonvane {

// (b0 + b1/z + b2/z^2) / (1 + a1/z + a2/z^2).
struct Biquad {
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
};

// Coefficient words in the order b0, b1, b2, -a1, -a2; 20 bytes on the wire. The amplifier adds its
// feedback terms, hence the signs.
constexpr int32_t wordsPerBiquad = 5;
using BiquadWords = std::array<int32_t, wordsPerBiquad>;

// The section that passes everything through.
constexpr BiquadWords UnityBiquad{0x800000, 0, 0, 0, 0};

// Coefficients out of range wrap; what is no number becomes 0.
BiquadWords EncodeBiquad(const Biquad& section);

// Five words a section, section after section.
std::vector<int32_t> EncodeBiquads(std::span<const Biquad> sections);

// The sections that words stand for, to the last bit. Words that make no whole section are left
// out.
std::vector<Biquad> DecodeBiquads(std::span<const int32_t> words);

}  // namespace tonvane
