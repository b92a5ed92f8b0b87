// What a chain of biquads does, as designed or read back from its words.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace tonvane {

// (b0 + b1/z + b2/z^2) / (1 + a1/z + a2/z^2); a[0] is 1.
struct BiquadSection {
    std::array<double, 3> b;
    std::array<double, 3> a;
};

// The chain's amplitude in dB at each frequency (Hz) for a sample rate (Hz).
std::vector<double> CascadeResponseDb(std::span<const BiquadSection> sections,
                                      std::span<const double> frequencies, int32_t sampleRate);

// The same of encoded sections, five words each.
std::vector<double> CascadeResponseDb(std::span<const int32_t> words,
                                      std::span<const double> frequencies, int32_t sampleRate);

// The same of a FIR filter.
std::vector<double> FirResponseDb(std::span<const double> taps, std::span<const double> frequencies,
                                  int32_t sampleRate);

// The magnitude of the chain's largest pole; below 1 for a stable chain.
double LargestPoleRadius(std::span<const int32_t> words);

}  // namespace tonvane
