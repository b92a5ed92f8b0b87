#include "analysis/ResponseAnalyzer.h"

#include <algorithm>
#include <cmath>

#include "analysis/CutoffSearch.h"
#include "analysis/PhaseCurve.h"
#include "analysis/Polarity.h"
#include "elementary/Elementary.h"
#include "transform/ResponseShape.h"

namespace tonvane {

namespace {

constexpr double onsetThreshold = 0.125;  // of the peak

// The first sample above an eighth of the peak; the length for silence.
int32_t findOnset(std::span<const double> x) {
    double peak = 0.0;
    for (const double sample : x) {
        peak = std::max(peak, std::fabs(sample));
    }
    const auto onset = std::find_if(x.begin(), x.end(), [peak](double sample) {
        return std::fabs(sample) > onsetThreshold * peak;
    });
    return static_cast<int32_t>(onset - x.begin());
}

double levelFactor(double gainDb) {
    return elementary::Exp10(gainDb / -20.0);
}

}  // namespace

void ResponseAnalyzer::reset() {
    valid = false;
    sampleRate = 0.0;
    length = 0;
    bins = 0;
    polarity = 0;
    delaySamples = 0;
    cutoffHz = 80;
    timeMin = -1.0;
    timeMax = 1.0;
}

void ResponseAnalyzer::loadImpulse(double rate, int32_t n, std::span<const double> impulse) {
    sampleRate = rate;
    valid = true;
    length = n;
    response.resize(n);
    std::copy_n(impulse.begin(), n, response.time().begin());
    analyse();
}

void ResponseAnalyzer::loadCapture(CTestSignal& signal, std::span<const double> capture) {
    sampleRate = signal.sampleRate;
    response.resize(responseLength);
    constexpr int32_t rotation = responseLength / 2 - onsetLead;
    const std::span<double> x = response.time();
    for (int32_t i = 0; i < responseLength; ++i) {
        x[i] = capture[(i + rotation) % responseLength];
    }

    const std::span<const double> impulse = signal.deconvolve(x);
    loadImpulse(sampleRate, responseLength, impulse);
}

void ResponseAnalyzer::loadMagnitudes(double rate, int32_t n, std::span<const double> magnitudes) {
    sampleRate = rate;
    valid = true;
    length = n;
    response.resize(n);
    response.setSpectrumReal(magnitudes);
    bins = static_cast<int32_t>(response.spectrum.size());

    // The range is that of the first `bins` doubles of the spectrum as a flat array: real and
    // imaginary words in turn, so the lower half of the bins.
    timeMin = 0.0;
    timeMax = 0.0;
    for (int32_t i = 0; i < bins; ++i) {
        const auto& bin = response.spectrum[i / 2];
        const double word = i % 2 == 0 ? bin.real() : bin.imag();
        timeMin = std::min(timeMin, word);
        timeMax = std::max(timeMax, word);
    }
}

void ResponseAnalyzer::analyse() {
    response.forward();
    bins = static_cast<int32_t>(response.spectrum.size());
    const std::span<const double> x = response.time();
    const int32_t first = findOnset(x);
    delaySamples = first - onsetLead;

    phaseDegrees.ensure(length);
    ComputePhaseCurve(x, first, phaseDegrees.first(bins));
    cutoffCurve.ensure(bins);
    cutoffHz = SearchCutoff(response, sampleRate, cutoffCurve.first(bins));
    polarity = FindPolarity(response, sampleRate, first, polarityProbe);

    timeMin = 0.0;
    timeMax = 0.0;
    for (const double sample : x) {
        timeMin = std::min(timeMin, sample);
        timeMax = std::max(timeMax, sample);
    }
}

void ResponseAnalyzer::predictFir(std::span<const double> taps, double gainDb) {
    const double g = levelFactor(gainDb);
    firPrediction.resize(length);
    firPrediction.setSamplesPadded(taps);
    firPrediction.forward();
    for (int32_t k = 0; k < bins; ++k) {
        auto& bin = firPrediction.spectrum[k];
        bin = elementary::Product(response.spectrum[k] * g, bin);
    }
}

void ResponseAnalyzer::predictIir(std::span<const double> numerator,
                                  std::span<const double> denominator, double gainDb) {
    const double g = levelFactor(gainDb);
    iirPrediction.resize(length);
    iirPrediction.setSamplesPadded(numerator);
    iirPrediction.forward();
    iirDenominator.resize(length);
    iirDenominator.setSamplesPadded(denominator);
    iirDenominator.forward();
    for (int32_t k = 0; k < bins; ++k) {
        auto& bin = iirPrediction.spectrum[k];
        const auto quotient = elementary::Quotient(bin, iirDenominator.spectrum[k]);
        bin = elementary::Product(response.spectrum[k], quotient * g);
    }
}

void ResponseAnalyzer::predictFilter(const ComplexVector& filter) {
    iirPrediction.resize(length);
    std::ranges::transform(response.spectrum, filter, iirPrediction.spectrum.begin(),
                           elementary::Product);
}

}  // namespace tonvane
