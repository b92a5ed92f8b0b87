#include "example-speaker/AnalogSection.h"

#include <cstddef>

#include "elementary/Elementary.h"

namespace tonvane::example {

namespace {

std::complex<double> polynomial(const std::array<double, 5>& c, double x) {
    const double square = x * x;
    return {c[0] - square * (c[2] - square * c[4]), x * (c[1] - square * c[3])};
}

}  // namespace

std::complex<double> AnalogSection::at(double f) const {
    const double x = f / hertz;
    return elementary::Quotient(polynomial(numerator, x), polynomial(denominator, x));
}

AnalogSection FirstOrderLowPass(double corner) {
    return {corner, {1.0}, {1.0, 1.0}};
}

AnalogSection SecondOrderLowPass(double corner, double quality) {
    return {corner, {1.0}, {1.0, 1.0 / quality, 1.0}};
}

AnalogSection Resonance(double centre, double quality, double decibels) {
    const double height = elementary::Exp10(decibels / 20.0);
    return {centre, {1.0, height / quality, 1.0}, {1.0, 1.0 / quality, 1.0}};
}

}  // namespace tonvane::example
