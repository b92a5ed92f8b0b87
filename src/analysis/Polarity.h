// The polarity of a response: the sign of its first swing.
#pragma once

#include <cstdint>

#include "transform/SpectrumBuffer.h"

namespace tonvane {

// +1 or -1 by the largest value of the response limited to 50 .. 2000 Hz, under a gate that opens
// at the last zero crossing ahead of the onset `first` (at most half a millisecond back) and halves
// every third of a millisecond, so that only the first swing counts. Silence gives -1. The gated
// signal is left in the samples of `probe`.
int32_t FindPolarity(const SpectrumBuffer& response, double sampleRate, int32_t first,
                     SpectrumBuffer& probe);

}  // namespace tonvane
