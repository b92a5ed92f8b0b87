// Figures of the amplifier's words as a filter, found on a dense grid.
#pragma once

#include <cstdint>
#include <span>

namespace tonvane {

struct HighestGain {
    double db = 0.0;
    double hertz = 0.0;
    int32_t points = 0;  // frequencies that were looked at, from 0 to half the rate
};

// The highest gain of the whole chain of sections, five words each, on 32769 evenly and 8192
// geometrically spaced frequencies. What lies between them is not looked at.
HighestGain HighestGainOf(std::span<const int32_t> words, int32_t sampleRate);

// What happens inside the chain.
struct ChainFigures {
    HighestGain highestGain;
    // How far the highest level behind any of the sections lies above the highest at the output,
    // dB, 0 or more; behind which section, from 1; and at which frequency. A signal that fits in at
    // the output overflows there.
    double insideDb = 0.0;
    int32_t insideSection = 0;
    double insideHertz = 0.0;
    // The power at the output of a rounding once in each section, from 0 to half the rate, in dB
    // above that of a single rounding. Infinite unless the filter is stable.
    double noiseDb = 0.0;
    // Of all pairs of poles and zeros, as analog ones by the bilinear transform; infinite for one
    // on the unit circle.
    double largestQ = 0.0;
};

// Of a chain of one section or more on the same frequencies, the noise on the evenly spaced ones.
ChainFigures ChainFiguresOf(std::span<const int32_t> words, int32_t sampleRate);

}  // namespace tonvane
