// One analog filter of low order, as a function of frequency.
#pragma once

#include <array>
#include <complex>

namespace tonvane::example {

// A rational function of p = j*f/hertz. Coefficients ascend: [n] belongs to p^n.
struct AnalogSection {
    double hertz;
    std::array<double, 5> numerator;
    std::array<double, 5> denominator;

    // The complex response at f, Hz.
    [[nodiscard]] std::complex<double> at(double f) const;
};

// 1 far below the corner, -3 dB at it, 6 dB an octave above.
AnalogSection FirstOrderLowPass(double corner);

// 1 far below the corner, `quality` at it, 12 dB an octave above.
AnalogSection SecondOrderLowPass(double corner, double quality);

// 1 far from the centre and 10^(decibels/20), without phase, at it: a resonance of this quality in
// parallel to the direct path. Negative decibels make a dip.
AnalogSection Resonance(double centre, double quality, double decibels);

}  // namespace tonvane::example
