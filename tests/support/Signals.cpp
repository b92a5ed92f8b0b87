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

std::complex<double> PolynomialAt(std::span<const double> coefficients, double hertz,
                                  double sampleRate) {
    std::complex<long double> sum = 0.0L;
    for (size_t n = 0; n < coefficients.size(); ++n) {
        const long double turns =
            std::fmod(static_cast<long double>(hertz) * n, sampleRate) / sampleRate;
        sum += static_cast<long double>(coefficients[n]) *
               std::polar(1.0L, -2.0L * std::numbers::pi_v<long double> * turns);
    }
    return std::complex<double>(sum);
}

double Decibels(double amplitude) {
    return 20.0 * std::log10(amplitude);
}

}  // namespace tonvane::tests
