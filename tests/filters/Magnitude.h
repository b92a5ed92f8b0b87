// Levels of a rational function, evaluated apart from the code under test.
#pragma once

#include "filters/RationalFunction.h"
#include "support/Signals.h"

namespace tonvane::tests {

// Of a digital filter; the frequency is a fraction of the sample frequency.
inline double DigitalDecibels(const CRationalFunction& h, double frequency) {
    const auto at = [frequency](const CPolynomial& p) {
        const std::span values(p.coefficients.get(), static_cast<size_t>(p.degree + 1));
        return std::abs(PolynomialAt(values, frequency, 1.0));
    };
    return Decibels(at(h.numerator) / at(h.denominator));
}

}  // namespace tonvane::tests
