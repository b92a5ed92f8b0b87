// Words that never amplify more than they may.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "refine/SectionLayout.h"

namespace tonvane {

// 2048 values of T: of 1024 frequencies in a geometric row from 5 Hz to 0.4999 of the sample rate
// (Hz), and of 1024 evenly spaced ones.
std::vector<double> BoundTangents(int32_t sampleRate);

// The highest level of the sections over these, dB.
double HighestLevelDb(std::span<const Biquad> sections, std::span<const double> tangents);

struct BoundedWords {
    std::vector<Biquad> sections;  // as they were encoded
    std::vector<int32_t> words;    // five a section
    bool keepsLimit = false;       // whether the decoded words are nowhere above the limit
};

// Encodes the chain, with its gain lowered as far as the decoded words need to stay within
// `limitDb` at all of `tangents`. After twelve turns they are left as they are.
BoundedWords EncodeWithin(const SectionChain& chain, double limitDb,
                          std::span<const double> tangents);

}  // namespace tonvane
