// The phase of a response without its bulk delay.
#pragma once

#include <cstdint>
#include <span>

namespace tonvane {

// Fills `degrees` (N/2 + 1 values, -180 to 180) from the N samples of `impulse`. Samples before the
// onset `first` count in full, those after it fade out over N/16 samples by half a Hann window. The
// spectrum is turned back by the delay of the largest sample and smoothed over neighbouring bins by
// 0.5, 1, 0.5, which is a raised-cosine gate around that sample. The two end bins are 0.
void ComputePhaseCurve(std::span<const double> impulse, int32_t first, std::span<double> degrees);

}  // namespace tonvane
