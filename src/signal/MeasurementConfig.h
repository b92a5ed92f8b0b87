// What a measurement runs with.
#pragma once

#include <cstdint>

#include "signal/PinkNoise.h"

namespace tonvane {

struct MeasurementConfig {
    std::intptr_t socket = -1;  // the link's socket handle; -1 while there is none
    int32_t sampleRate = 0;     // Hz, the measuring rate
    int32_t repeats = 0;        // periods played
    CPinkNoise signal;          // the excitation
};

}  // namespace tonvane
