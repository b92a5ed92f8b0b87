// A loudness weighting over a range of bins of the response spectrum.
#pragma once

#include <cstdint>

#include "transform/ComplexVector.h"
#include "transform/SampleArray.h"

namespace tonvane {

struct BandWeight {
    int32_t binCount = 0;  // N/2 + 1 once built, 0 before
    int32_t firstBin = 0;  // first bin counted
    int32_t endBin = 0;    // one past the last bin counted
    SampleArray weights;   // binCount values, 0 outside the range
    double weightSum = 0.0;

    // Builds the weights 1/((140/f + 1)*(f/440 + 1)*(440/f + 1)^2) for the bins of an n-point
    // transform at fs hertz from lowHz up to, not including, highHz; 0 stands for half of fs. The
    // curve peaks near 1050 Hz and lies 20 dB lower at 40 Hz and 5 dB lower at 10 kHz.
    void build(int32_t n, double fs, double lowHz, double highHz);

    // The weighted mean of |x|^2 over the range; x has binCount bins.
    [[nodiscard]] double energy(const ComplexVector& x) const;

    // The same of |x*y|^2.
    [[nodiscard]] double energyOfProduct(const ComplexVector& x, const ComplexVector& y) const;
};

}  // namespace tonvane
