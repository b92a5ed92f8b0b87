#include "signal/ChirpSignal.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

// The frequency of bin k in whole hertz. The product is formed in 32 bits and wraps, which at
// 192 kHz leaves the bins above 65.5 kHz out of the band.
int32_t binFrequency(int32_t sampleRate, int32_t k, int32_t length) {
    const auto product =
        static_cast<int32_t>(static_cast<uint32_t>(sampleRate) * static_cast<uint32_t>(k));
    return product / length;
}

}  // namespace

CChirpSignal::CChirpSignal() : peakAmplitude(std::sqrt(0.5)) {}

ComplexVector& CChirpSignal::spectrum() {
    return excitation.spectrum;
}

std::span<const double> CChirpSignal::samples() {
    return excitation.time();
}

// Group delay of bin k: (1 - s)*N/2 + 2*s*k samples, so the sweep runs from 12 % to 88 % of the
// period.
std::span<const double> CChirpSignal::generate() {
    excitation.resize(length);
    const double n = length;
    spanFraction = 0.76;
    const double s = spanFraction;
    binMagnitude = std::sqrt(0.5 * s / n) * peakAmplitude;
    for (int32_t k = 0; k < excitation.bins; ++k) {
        const double phase = 2.0 * std::numbers::pi * s * k * ((1.0 - 1.0 / s) * (n / 2.0) - k) / n;
        excitation.spectrum[k] = binMagnitude * elementary::UnitPhasor(phase);
    }
    excitation.inverse();
    return samples();
}

std::span<const double> CChirpSignal::deconvolve(std::span<const double> captured) {
    capture.resize(length);
    response.resize(length);
    std::copy_n(captured.begin(), length, capture.time().begin());
    capture.forward();

    // Two unscaled transforms, one of the excitation and one of the response, each owe a 1/N.
    const double scale = (1.0 / length) / length;
    for (int32_t k = 0; k < response.bins; ++k) {
        const int32_t frequency = binFrequency(sampleRate, k, length);
        const bool inBand = frequency >= lowFrequency && frequency <= highFrequency;
        // The noise leaves a bin out whose frequency is in the band by its whole hertz only.
        const bool isPlayed = excitation.spectrum[k] != 0.0;
        response.spectrum[k] =
            inBand && isPlayed
                ? elementary::Quotient(capture.spectrum[k] * scale, excitation.spectrum[k])
                : 0.0;
    }
    response.inverse();
    return response.time();
}

}  // namespace tonvane
