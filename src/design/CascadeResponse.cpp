#include "design/CascadeResponse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "design/LogResponse.h"
#include "elementary/Elementary.h"

namespace tonvane {

namespace {

std::vector<double> anglesOf(std::span<const double> frequencies, int32_t sampleRate) {
    std::vector<double> angles(frequencies.size());
    std::ranges::transform(frequencies, angles.begin(), [sampleRate](double hertz) {
        return -2.0 * std::numbers::pi * hertz / sampleRate;
    });
    return angles;
}

// The larger magnitude of the two roots of z^2 + a1*z + a2.
double largerRoot(double a1, double a2) {
    const double discriminant = a1 * a1 / 4.0 - a2;
    return discriminant < 0.0 ? std::sqrt(a2) : std::fabs(a1) / 2.0 + std::sqrt(discriminant);
}

}  // namespace

std::vector<double> CascadeResponseDb(std::span<const Biquad> sections,
                                      std::span<const double> frequencies, int32_t sampleRate) {
    const ComplexVector points = UnitCirclePoints(anglesOf(frequencies, sampleRate));
    std::vector<double> total(frequencies.size(), 1.0);
    for (const auto& [b0, b1, b2, a1, a2] : sections) {
        multiplyResponseAt(std::array{b0, b1, b2}, std::array{1.0, a1, a2}, points, total);
    }
    for (double& value : total) {
        value = 20.0 * elementary::Log10(value);
    }
    return total;
}

std::vector<double> CascadeResponseDb(std::span<const int32_t> words,
                                      std::span<const double> frequencies, int32_t sampleRate) {
    return CascadeResponseDb(DecodeBiquads(words), frequencies, sampleRate);
}

ComplexVector CascadeSpectrum(std::span<const Biquad> sections, int32_t points) {
    ComplexVector spectrum(points);
    for (int32_t i = 0; i < points; ++i) {
        const auto z = elementary::UnitPhasor(-std::numbers::pi * i / (points - 1));
        const auto polynomial = [z](double c0, double c1, double c2) {
            return c0 + elementary::Product(z, c1 + c2 * z);
        };
        std::complex<double> response = 1.0;
        for (const auto& [b0, b1, b2, a1, a2] : sections) {
            response = elementary::Product(
                response, elementary::Quotient(polynomial(b0, b1, b2), polynomial(1.0, a1, a2)));
        }
        spectrum[i] = response;
    }
    return spectrum;
}

std::vector<double> FirResponseDb(std::span<const double> taps, std::span<const double> frequencies,
                                  int32_t sampleRate) {
    std::vector<double> response(frequencies.size());
    logResponse(taps, {}, anglesOf(frequencies, sampleRate), response);
    for (double& value : response) {
        value *= 20.0;
    }
    return response;
}

std::vector<double> PoleRadii(std::span<const int32_t> words) {
    const std::vector<Biquad> sections = DecodeBiquads(words);
    std::vector<double> radii(sections.size());
    std::ranges::transform(sections, radii.begin(), [](const Biquad& section) {
        return largerRoot(section.a1, section.a2);
    });
    return radii;
}

double LargestPoleRadius(std::span<const int32_t> words) {
    double largest = 0.0;
    for (const double radius : PoleRadii(words)) {
        largest = std::max(largest, radius);
    }
    return largest;
}

}  // namespace tonvane
