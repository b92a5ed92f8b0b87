#include "support/Signals.h"

#include <cmath>
#include <numbers>
#include <random>

namespace tonvane::tests {

std::vector<double> Noise(int32_t n, uint32_t seed) {
    std::mt19937 generator(seed);
    std::vector<double> values(static_cast<size_t>(n));
    for (double& value : values) {
        value = static_cast<double>(generator()) / 2147483648.0 - 1.0;
    }
    return values;
}

std::complex<long double> DftBin(std::span<const double> samples, int64_t k) {
    const auto n = static_cast<int64_t>(samples.size());
    std::complex<long double> sum = 0.0L;
    for (int64_t t = 0; t < n; ++t) {
        const auto turns = static_cast<long double>(k * t % n) / static_cast<long double>(n);
        sum += static_cast<long double>(samples[t]) *
               std::polar(1.0L, -2.0L * std::numbers::pi_v<long double> * turns);
    }
    return sum;
}

std::vector<double> ImpulseResponse(std::span<const double> b, std::span<const double> a,
                                    int32_t n) {
    std::vector<double> h(static_cast<size_t>(n));
    for (size_t t = 0; t < h.size(); ++t) {
        h[t] = t < b.size() ? b[t] : 0.0;
        for (size_t i = 1; i < a.size() && i <= t; ++i) {
            h[t] -= a[i] * h[t - i];
        }
    }
    return h;
}

std::complex<double> PolynomialAt(std::span<const double> coefficients, double hertz,
                                  double sampleRate) {
    std::complex<double> sum = 0.0;
    for (size_t n = 0; n < coefficients.size(); ++n) {
        sum += coefficients[n] * std::polar(1.0, -2.0 * std::numbers::pi * hertz / sampleRate *
                                                     static_cast<double>(n));
    }
    return sum;
}

double Decibels(double amplitude) {
    return 20.0 * std::log10(amplitude);
}

}  // namespace tonvane::tests
