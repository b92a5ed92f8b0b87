// Second-order sections as the amplifier takes them.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace tonvane {

// Coefficient words in the order b0, b1, b2, -a1, -a2, the numerator times the section's gain; 20
// bytes on the wire. The amplifier adds its feedback terms, hence the signs; a0 is taken to be 1.
constexpr int32_t wordsPerBiquad = 5;
using BiquadWords = std::array<int32_t, wordsPerBiquad>;

// The section that passes everything through.
constexpr BiquadWords UnityBiquad{0x800000, 0, 0, 0, 0};

// Encodes sectionCount sections, three doubles each in numerators (b0, b1, b2) and denominators
// (a0, a1, a2; a0 is not read), into five words each of output. The gain multiplies the numerators
// only. A count of 0 or less writes nothing. Coefficients out of range wrap.
void EncodeBiquads(int32_t sectionCount, std::span<const double> numerators,
                   std::span<const double> denominators, double gain, std::span<int32_t> output);

}  // namespace tonvane
