// The design of the equalizer as a 256-tap minimum-phase FIR that only cuts.
//
// A target, set by setTarget, and a response, given by one of the prepare operations, meet on the
// design grid. designFir lowers what exceeds the target and searches the level at which the
// equalized response is as loud as the raw one plus the gain clamp. Built after the transform
// tables exist; used by one thread; allocates only in the constructor, in setTapCount's first
// designFir and in the first preparation. Nothing is reported: bad input gives a bad filter or NaN.
#pragma once

#include <cstdint>
#include <span>

#include "design/BandWeight.h"
#include "design/DesignGrid.h"
#include "design/LevelSearch.h"
#include "design/TargetRecord.h"
#include "transform/SampleArray.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

class EqDesigner {
  public:
    EqDesigner();

    // Sets tapCount = n and bins = n/2 + 1.
    void setTapCount(int32_t n);

    // Fills targetPower and passband on the grid of the present sampleRate. `kind` is a TargetKind.
    void setTarget(const TargetRecord& record, int32_t kind);

    // Takes the 32768 samples of an impulse response with its onset at delaySamples + 32. What the
    // designer corrects is the response under a gate that starts at the onset and falls to 0.13
    // after gateMs; its loudness is that of the whole response.
    void prepareFromImpulse(std::span<const double> impulse, int32_t delaySamples);

    // Takes the 16385 bins of a response as they are, without a gate.
    void prepareFromSpectrum(const ComplexVector& spectrum);

    // Finds the filter for the prepared response at gainClampDb. outputRate (Hz) is the rate at
    // which the filter will run.
    void designFir(int32_t outputRate);

    // One evaluation of the search: the filter for a level (power) and a gain outside the
    // pass-band (amplitude), its taps in firWork, its loudness ratio in loudnessRatio.
    void trial(double level, double gain);

    // The tapCount taps of the minimum-phase filter with this power response, into firWork's
    // samples (zero from tapCount on), and the spectrum of the truncated filter over 4096 into its
    // bins.
    void minimumPhase(const DesignCurve& power);

    // filterPower on the grid of outputRate, into designPower; fillAmplitude stands for points
    // above half the sample rate.
    void resampleCurve(int32_t outputRate, double fillAmplitude);

    int32_t sampleRate = 0;         // Hz; 0 until first set
    int32_t tapCount = 0;           // FIR taps
    int32_t bins = 0;               // tapCount/2 + 1
    int32_t gateMs = 250;           // time scale of the gate
    double gainClampDb = 0.0;       // 0 to -12: level of the equalized against the raw response
    SpectrumBuffer measured;        // 32768: the response as the designer sees it
    SpectrumBuffer filterLong;      // 32768: trial FIR, zero-padded
    SpectrumBuffer cepstrumWork;    // 4096
    SpectrumBuffer firWork;         // 4096
    double measuredLoudness = 0.0;  // weighted power of the raw response
    double loudnessRatio = 1.0;     // amplitude ratio equalized to raw of the last trial
    double level = 0.0;             // power level of the last trial
    std::array<double, responseLength> gate{};  // the gate applied to an impulse response
    DesignCurve targetPower{};
    DesignCurve passband{};       // 0 to 1
    DesignCurve measuredPower{};  // smoothed
    DesignCurve smoothingScratch{};
    DesignCurve filterPower{};  // requested filter of the last trial
    DesignCurve designPower{};  // filterPower on the grid of the output rate
    SampleArray firTaps;        // the tapCount taps of the result
    ComplexVector firSpectrum;  // the 2049 bins of the result; empty before the first design
    BandWeight bandWeight;      // built at the first preparation and kept through rate changes

  private:
    void buildBandWeight();
    void shapeGate();
    void applyGate(std::span<const double> impulse, int32_t first);

    LevelSearch search_;
    int32_t gateRate_ = 0;  // of gateFall_
    int32_t gateTime_ = 0;
    std::array<double, responseLength> gateFall_{};  // the gate from the onset on
};

}  // namespace tonvane
