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

}  // namespace tonvane
