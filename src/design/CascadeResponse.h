// What a chain of biquads does, as designed or read back from its words.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "amplifier/BiquadWords.h"
#include "transform/ComplexVector.h"

namespace tonvane {

// The chain's amplitude in dB at each frequency (Hz) for a sample rate (Hz).
std::vector<double> CascadeResponseDb(std::span<const Biquad> sections,
                                      std::span<const double> frequencies, int32_t sampleRate);

// The same of encoded sections, five words each.
std::vector<double> CascadeResponseDb(std::span<const int32_t> words,
                                      std::span<const double> frequencies, int32_t sampleRate);

// The chain's complex response at i*pi/(points - 1), from 0 to half the sample rate.
ComplexVector CascadeSpectrum(std::span<const Biquad> sections, int32_t points);

// The decibels of a FIR filter.
std::vector<double> FirResponseDb(std::span<const double> taps, std::span<const double> frequencies,
                                  int32_t sampleRate);

// The radius of each section's outermost pole.
std::vector<double> PoleRadii(std::span<const int32_t> words);

// The largest of these; below 1 for a stable chain.
double LargestPoleRadius(std::span<const int32_t> words);

}  // namespace tonvane
