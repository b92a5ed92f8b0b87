#include "analysis/ResponseAnalyzer.h"

#include <algorithm>
#include <cmath>
#include <utility>

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
    polarity_ = 0;
    delaySamples = 0;
    cutoffHz_ = 80;
    isPhasePending_ = false;
    isCutoffPending_ = false;
    isPolarityPending_ = false;
    timeMin = -1.0;
    timeMax = 1.0;
}

void ResponseAnalyzer::loadImpulse(double rate, int32_t n, std::span<const double> impulse) {
    ++loads;
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
    ++loads;
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
    delaySamples = findOnset(x) - onsetLead;
    isPhasePending_ = true;
    isCutoffPending_ = true;
    isPolarityPending_ = true;

    timeMin = 0.0;
    timeMax = 0.0;
    for (const double sample : x) {
        timeMin = std::min(timeMin, sample);
        timeMax = std::max(timeMax, sample);
    }
}

int32_t ResponseAnalyzer::polarity() const {
    if (isPolarityPending_) {
        isPolarityPending_ = false;
        SpectrumBuffer probe;
        polarity_ = FindPolarity(response, sampleRate, delaySamples + onsetLead, probe);
    }
    return polarity_;
}

void ResponseAnalyzer::searchCutoff() const {
    if (isCutoffPending_) {
        isCutoffPending_ = false;
        cutoffCurve_.resize(bins);
        cutoffHz_ = SearchCutoff(response, sampleRate, cutoffCurve_);
    }
}

int32_t ResponseAnalyzer::cutoffHz() const {
    searchCutoff();
    return cutoffHz_;
}

std::span<const double> ResponseAnalyzer::cutoffCurve() const {
    searchCutoff();
    return cutoffCurve_;
}

std::span<const double> ResponseAnalyzer::phaseDegrees() const {
    if (isPhasePending_) {
        isPhasePending_ = false;
        phaseDegrees_.resize(bins);
        ComputePhaseCurve(response.time(), delaySamples + onsetLead, phaseDegrees_);
    }
    return phaseDegrees_;
}

void ResponseAnalyzer::predictFir(std::span<const double> taps, double gainDb) {
    fir_.isPending = true;
    fir_.numerator.assign(taps.begin(), taps.end());
    fir_.gainDb = gainDb;
}

void ResponseAnalyzer::predictIir(std::span<const double> numerator,
                                  std::span<const double> denominator, double gainDb) {
    iir_.isPending = true;
    iir_.filter = nullptr;
    iir_.numerator.assign(numerator.begin(), numerator.end());
    iir_.denominator.assign(denominator.begin(), denominator.end());
    iir_.gainDb = gainDb;
}

void ResponseAnalyzer::predictFilter(std::function<ComplexVector(int32_t)> filter) {
    iir_.isPending = true;
    iir_.filter = std::move(filter);
}

const ComplexVector& ResponseAnalyzer::firPrediction() const {
    return predicted(fir_);
}

const ComplexVector& ResponseAnalyzer::iirPrediction() const {
    return predicted(iir_);
}

const ComplexVector& ResponseAnalyzer::predicted(Prediction& prediction) const {
    if (!prediction.isPending || !valid) {
        return prediction.bins.spectrum;
    }
    prediction.isPending = false;
    ComplexVector& filter = prediction.bins.spectrum;
    prediction.bins.resize(length);
    if (prediction.filter) {
        std::ranges::transform(response.spectrum, prediction.filter(bins), filter.begin(),
                               elementary::Product);
        return filter;
    }
    const double g = levelFactor(prediction.gainDb);
    prediction.bins.setSamplesPadded(prediction.numerator);
    prediction.bins.forward();
    if (prediction.denominator.empty()) {
        for (int32_t k = 0; k < bins; ++k) {
            filter[k] = elementary::Product(response.spectrum[k] * g, filter[k]);
        }
        return filter;
    }
    SpectrumBuffer denominator;
    denominator.resize(length);
    denominator.setSamplesPadded(prediction.denominator);
    denominator.forward();
    for (int32_t k = 0; k < bins; ++k) {
        const auto quotient = elementary::Quotient(filter[k], denominator.spectrum[k]);
        filter[k] = elementary::Product(response.spectrum[k], quotient * g);
    }
    return filter;
}

}  // namespace tonvane
