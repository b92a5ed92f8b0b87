// What a chain of encoded biquads does, read back from its words.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tonvane {

// The chain's amplitude in dB at each frequency (Hz) for a sample rate (Hz). Five words a section.
std::vector<double> CascadeResponseDb(std::span<const int32_t> words,
                                      std::span<const double> frequencies, int32_t sampleRate);

// The same of a FIR filter.
std::vector<double> FirResponseDb(std::span<const double> taps, std::span<const double> frequencies,
                                  int32_t sampleRate);

// The magnitude of the chain's largest pole; below 1 for a stable chain.
double LargestPoleRadius(std::span<const int32_t> words);

}  // namespace tonvane
