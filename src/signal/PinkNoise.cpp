#include "signal/PinkNoise.h"

#include <cmath>
#include <numbers>

#include "elementary/Elementary.h"
#include "signal/NoiseGenerator.h"

namespace tonvane {

namespace {

constexpr double twoPi = 6.283185307179586;

// Relative power at f hertz: flat below about 80 Hz, falling as 1/f above.
double pinkPower(double f) {
    return (f / 160.0 + 1.0) / ((f * f / 80.0) / 80.0 + 1.0);
}

}  // namespace

std::span<const double> CPinkNoise::generate() {
    excitation.resize(length);
    spanFraction = 0.85;
    highFrequency = sampleRate / 2;
    lowFrequency = order < 15 ? 40 : 20;

    NoiseGenerator noise(0);
    double sum = 0.0;
    for (int32_t k = 0; k < excitation.bins; ++k) {
        const double f = static_cast<double>(k) * sampleRate / length;
        double phase = noise.next() * twoPi / NoiseGenerator::maximum;
        if (k == 0 || k == length / 2) {
            // Whole multiples of pi keep these two bins real.
            phase = std::trunc(phase / std::numbers::pi) * std::numbers::pi;
        }
        const double power = f < lowFrequency || f > highFrequency ? 0.0 : pinkPower(f);
        sum += power;
        excitation.spectrum[k] = std::sqrt(power) * elementary::UnitPhasor(phase);
    }

    // Without a bin in the band, at a rate below 40 Hz, the noise is silence.
    const double scale = sum > 0.0 ? std::sqrt(1.0 / (2.0 * sum)) / 4.5 : 0.0;
    for (auto& bin : excitation.spectrum) {
        bin *= scale;
    }
    excitation.inverse();
    return samples();
}

}  // namespace tonvane
