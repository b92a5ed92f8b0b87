#include "design/EqDesigner.h"

#include <algorithm>
#include <cmath>

#include "design/MinimumPhase.h"
#include "design/Smoothing.h"
#include "design/TargetShaping.h"
#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr double loudnessLowHz = 40.0;

}  // namespace

EqDesigner::EqDesigner() {
    cepstrumWork.resize(designLength);
    firWork.resize(designLength);
    measured.resize(responseLength);
    filterLong.resize(responseLength);
}

void EqDesigner::setTapCount(int32_t n) {
    tapCount = n;
    bins = n / 2 + 1;
}

void EqDesigner::setTarget(const TargetRecord& record, int32_t kind) {
    ShapeTarget(record, kind, sampleRate, targetPower);
    ShapePassband(record, sampleRate, passband);
}

// The weights stay those of the first design's rate: loudness is compared within one run.
void EqDesigner::buildBandWeight() {
    if (bandWeight.binCount != responseBins) {
        bandWeight.build(responseLength, sampleRate, loudnessLowHz, 0.0);
    }
}

// x^3*exp(-x) entered at its maximum x = 3, so that it starts at exactly 1 with zero slope.
void EqDesigner::shapeGate() {
    if (gateRate_ == sampleRate && gateTime_ == gateMs) {
        return;
    }
    gateRate_ = sampleRate;
    gateTime_ = gateMs;
    const auto gateSamples = static_cast<int64_t>(sampleRate) * gateMs;
    const double timeConstant = static_cast<double>(gateSamples) / 1000.0 / 5.0;
    for (int32_t i = 0; i < responseLength; ++i) {
        const double x = i / timeConstant + 3.0;
        gateFall_[i] = x * x * x * elementary::Exp(3.0 - x) / 27.0;
    }
}

void EqDesigner::applyGate(std::span<const double> impulse, int32_t first) {
    shapeGate();
    const auto onset = gate.begin() + std::clamp(first, 0, responseLength);
    std::fill(gate.begin(), onset, 1.0);
    std::copy(gateFall_.begin(), gateFall_.begin() + (gate.end() - onset), onset);
    for (int32_t i = 0; i < responseLength; ++i) {
        measured.samples[i] = impulse[i] * gate[i];
    }
}

void EqDesigner::prepareFromImpulse(std::span<const double> impulse, int32_t delaySamples) {
    buildBandWeight();
    applyGate(impulse, delaySamples + onsetLead);
    measured.forward();
    SmoothSpectrum(measured.spectrum, smoothingScratch, measuredPower);

    std::copy_n(impulse.begin(), responseLength, measured.time().begin());
    measured.forward();
    measuredLoudness = bandWeight.energy(measured.spectrum);
    search_.takeResponse(measured.spectrum, bandWeight);
}

void EqDesigner::prepareFromSpectrum(const ComplexVector& spectrum) {
    buildBandWeight();
    std::copy_n(spectrum.begin(), responseBins, measured.spectrum.begin());
    SmoothSpectrum(measured.spectrum, smoothingScratch, measuredPower);
    measuredLoudness = bandWeight.energy(measured.spectrum);
    search_.takeResponse(measured.spectrum, bandWeight);
}

void EqDesigner::designFir(int32_t outputRate) {
    const double wantedRatio = elementary::Exp10(gainClampDb / 20.0);
    double top = 0.0;
    for (const double power : measuredPower) {
        top = std::max(top, power);
    }

    // Bisection of the logarithm over 160 dB. The last midpoint stands, whichever side it is on.
    level = search_.find({targetPower, measuredPower, passband, wantedRatio, tapCount}, top,
                         [&](double midpoint) {
                             trial(midpoint, wantedRatio);
                             return loudnessRatio;
                         });
    trial(level, wantedRatio);

    resampleCurve(outputRate, loudnessRatio);
    if (designPower != filterPower) {  // else the trial's filter is the result
        minimumPhase(designPower);
    }

    firSpectrum.resize(designPoints);
    std::ranges::transform(firWork.spectrum, firSpectrum.begin(),
                           [](auto bin) { return bin * static_cast<double>(designLength); });
    firTaps.ensure(tapCount);
    std::ranges::copy(firWork.samples.first(tapCount), firTaps.first(tapCount).begin());
}

void EqDesigner::trial(double trialLevel, double gain) {
    for (int32_t i = 0; i < designPoints; ++i) {
        double ratio = targetPower[i] * trialLevel / measuredPower[i];
        if (ratio > 1.0) {
            ratio = 1.0;  // never above unity: the filter only cuts
        }
        filterPower[i] = passband[i] * ratio + (1.0 - passband[i]) * (gain * gain);
    }
    minimumPhase(filterPower);

    filterLong.setSamplesPadded(firWork.samples.first(tapCount));
    filterLong.forward();
    const double equalized = bandWeight.energyOfProduct(measured.spectrum, filterLong.spectrum);
    loudnessRatio = std::sqrt(equalized / measuredLoudness);
}

void EqDesigner::minimumPhase(const DesignCurve& power) {
    static constexpr double scale = 1.0 / designLength;
    for (int32_t k = 0; k < designPoints; ++k) {
        firWork.spectrum[k] = {elementary::Log(power[k]) * 0.5, 0.0};
    }
    MinimumPhaseFromLog(firWork, cepstrumWork);

    std::fill(firWork.time().begin() + tapCount, firWork.time().end(), 0.0);
    std::ranges::copy(firWork.time(), cepstrumWork.time().begin());
    cepstrumWork.forward();
    std::ranges::transform(cepstrumWork.spectrum, firWork.spectrum.begin(),
                           [](auto bin) { return bin * scale; });
}

void EqDesigner::resampleCurve(int32_t outputRate, double fillAmplitude) {
    const double step = static_cast<double>(outputRate) / sampleRate;
    const auto powerAt = [&](int64_t j) {
        return j >= 0 && j < designPoints ? filterPower[static_cast<size_t>(j)]
                                          : fillAmplitude * fillAmplitude;
    };
    for (int32_t i = 0; i < designPoints; ++i) {
        const double position = i * step;
        const int64_t j = elementary::TruncateToInt(std::floor(position));
        const double t = position - static_cast<double>(j);
        designPower[i] = (1.0 - t) * powerAt(j) + t * powerAt(j + 1);
    }
}

}  // namespace tonvane
