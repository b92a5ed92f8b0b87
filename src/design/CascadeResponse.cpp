#include "design/CascadeResponse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "amplifier/BiquadWords.h"
#include "amplifier/FixedPoint.h"
#include "design/LogResponse.h"
#include "elementary/Elementary.h"

namespace tonvane {

namespace {

BiquadSection decode(std::span<const int32_t> words) {
    return {{FromCoefWord(words[0]), FromCoefWord(words[1]), FromCoefWord(words[2])},
            {1.0, -FromCoefWord(words[3]), -FromCoefWord(words[4])}};
}

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

std::vector<double> CascadeResponseDb(std::span<const BiquadSection> sections,
                                      std::span<const double> frequencies, int32_t sampleRate) {
    const ComplexVector points = UnitCirclePoints(anglesOf(frequencies, sampleRate));
    std::vector<double> total(frequencies.size(), 1.0);
    for (const BiquadSection& section : sections) {
        multiplyResponseAt(section.b, section.a, points, total);
    }
    for (double& value : total) {
        value = 20.0 * elementary::Log10(value);
    }
    return total;
}

std::vector<double> CascadeResponseDb(std::span<const int32_t> words,
                                      std::span<const double> frequencies, int32_t sampleRate) {
    std::vector<BiquadSection> sections;
    sections.reserve(words.size() / wordsPerBiquad);
    for (size_t at = 0; at + wordsPerBiquad <= words.size(); at += wordsPerBiquad) {
        sections.push_back(decode(words.subspan(at, wordsPerBiquad)));
    }
    return CascadeResponseDb(sections, frequencies, sampleRate);
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

double LargestPoleRadius(std::span<const int32_t> words) {
    double largest = 0.0;
    for (size_t at = 0; at + wordsPerBiquad <= words.size(); at += wordsPerBiquad) {
        const BiquadSection biquad = decode(words.subspan(at, wordsPerBiquad));
        largest = std::max(largest, largerRoot(biquad.a[1], biquad.a[2]));
    }
    return largest;
}

}  // namespace tonvane
