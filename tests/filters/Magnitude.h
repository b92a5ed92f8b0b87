// Levels of a rational function, evaluated apart from the code under test.
#pragma once

#include <cmath>
#include <complex>
#include <numbers>

#include "filters/RationalFunction.h"

namespace tonvane::tests {

inline double DecibelsAtPoint(const CRationalFunction& h, std::complex<double> x) {
    const auto horner = [x](const CPolynomial& p) {
        std::complex<double> value = 0.0;
        for (int32_t power = p.degree; power >= 0; --power) {
            value = value * x + p[power];
        }
        return std::abs(value);
    };
    return 20.0 * std::log10(horner(h.numerator) / horner(h.denominator));
}

// Of a digital filter; the frequency is a fraction of the sample frequency.
inline double DigitalDecibels(const CRationalFunction& h, double frequency) {
    return DecibelsAtPoint(h, std::polar(1.0, -2.0 * std::numbers::pi * frequency));
}

// Of an analog prototype at w rad/s.
inline double AnalogDecibels(const CRationalFunction& h, double w) {
    return DecibelsAtPoint(h, {0.0, w});
}

}  // namespace tonvane::tests
