// The elliptic (Cauer) analog low-pass prototype.
#pragma once

#include "filters/RationalFunction.h"

namespace tonvane {

// Equal ripple in the pass band, 0 to 1 rad/s (epsilon), and in the stop band (stopDecibels below
// 0 dB). An order outside 1 to maximumOrder gives an empty function. A stop band that is not below
// the pass band gives NaN, with CarlsonRF's report.
CRationalFunction EllipticPrototype(int32_t order, double epsilon, double stopDecibels);

}  // namespace tonvane
