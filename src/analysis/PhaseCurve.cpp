#include "analysis/PhaseCurve.h"

#include <cmath>
#include <complex>
#include <numbers>

#include "elementary/Elementary.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

namespace {

constexpr double degreesPerRadian = 57.29577951308232;

int32_t indexOfPeak(std::span<const double> x) {
    int32_t index = 0;
    double peak = 0.0;
    for (size_t i = 0; i < x.size(); ++i) {
        if (std::fabs(x[i]) > peak) {
            peak = std::fabs(x[i]);
            index = static_cast<int32_t>(i);
        }
    }
    return index;
}

}  // namespace

void ComputePhaseCurve(std::span<const double> impulse, int32_t first, std::span<double> degrees) {
    const auto n = static_cast<int32_t>(impulse.size());
    const int32_t fadeLength = n / 16;

    SpectrumBuffer faded;
    faded.resize(n);
    for (int32_t i = 0; i < n; ++i) {
        const int32_t m = i - first;
        if (m < 0) {
            faded.samples[i] = impulse[i];
        } else if (m <= fadeLength) {
            const double angle = std::numbers::pi * m / fadeLength;
            faded.samples[i] = impulse[i] * (elementary::SinCos(angle).cosine + 1.0) * 0.5;
        } else {
            faded.samples[i] = 0.0;
        }
    }
    faded.forward();

    const double rotationPerBin = 2.0 * std::numbers::pi * indexOfPeak(impulse) / n;
    ComplexVector& z = faded.spectrum;
    for (int32_t q = 0; q < faded.bins; ++q) {
        z[q] = elementary::Product(z[q], elementary::UnitPhasor(q * rotationPerBin));
    }

    degrees[0] = 0.0;
    degrees[faded.bins - 1] = 0.0;
    for (int32_t k = 1; k < faded.bins - 1; ++k) {
        const std::complex<double> s = z[k] + 0.5 * (z[k - 1] + z[k + 1]);
        degrees[k] = elementary::Atan2(s.imag(), s.real()) * degreesPerRadian;
    }
}

}  // namespace tonvane
