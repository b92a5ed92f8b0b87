// The low-frequency cutoff of a response.
#pragma once

#include <cstdint>
#include <span>

#include "transform/SpectrumBuffer.h"

namespace tonvane {

// Tries every bin from 40 to 400 Hz as the corner and returns the one, in whole hertz, at which the
// power spectrum best matches energy above the corner and none below. The power from 20 to 800 Hz
// is projected on two templates with 24th-power flanks, one present above the corner and one below;
// the score is the first projection's energy less half of the second's.
//
// `curve` has one value a bin and receives the scores over 40 dB, the best 1.0 and the lowest 0.01;
// bins outside 20 to 400 Hz are 0. Silence scores 0 everywhere: the result is the lowest corner and
// the curve NaN. Without a corner to try, at a nonsense rate, the result is 47.
int32_t SearchCutoff(const SpectrumBuffer& response, double sampleRate, std::span<double> curve);

}  // namespace tonvane
