// The one loudspeaker response of a tuning run and what is read from it.
//
// A response comes as an impulse response, as a captured period of a test signal, or as magnitudes
// without a time signal. The transform tables must serve its length. Nothing is reported: a bad
// input gives bad figures. What a design does not need is found when it is first asked for. Used by
// one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "signal/TestSignal.h"
#include "transform/ComplexVector.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

class ResponseAnalyzer {
  public:
    ResponseAnalyzer() { reset(); }

    // Forgets the response: valid false, figures at their defaults (cutoff 80 Hz, polarity unknown,
    // delay 0, range -1 .. +1). Buffers and predictions keep their contents. Every load wants it
    // called first.
    void reset();

    // Takes n samples of an impulse response (n a power of two) at sampleRate hertz and analyses
    // them.
    void loadImpulse(double sampleRate, int32_t n, std::span<const double> impulse);

    // Takes one averaged period of 32768 captured samples, in the order received, deconvolves it
    // with the signal that was played and analyses the result. The capture is rotated by a fixed
    // 16352 samples, so that a response 16384 samples late has its onset at index 32.
    void loadCapture(CTestSignal& signal, std::span<const double> capture);

    // Takes the magnitudes of the n/2 + 1 bins. No analysis runs: the figures stay as reset left
    // them but for timeMin and timeMax.
    void loadMagnitudes(double sampleRate, int32_t n, std::span<const double> magnitudes);

    // Takes the filters whose predictions may be asked for: a FIR, and numerator/denominator
    // (coefficient of z^-n at index n). gainDb (dB, zero or negative) is the level drop of the
    // design, which the predictions take out again. Call after a load.
    void predictFir(std::span<const double> taps, double gainDb);
    void predictIir(std::span<const double> numerator, std::span<const double> denominator,
                    double gainDb);

    // The same through the filter whose response at 0 .. half the rate `filter` gives for a number
    // of bins, without a level drop; it is called when the prediction is first asked for.
    void predictFilter(std::function<ComplexVector(int32_t)> filter);

    // The bins of the response through these filters. A denominator that vanishes on a bin gives
    // NaN there.
    const ComplexVector& firPrediction() const;
    const ComplexVector& iirPrediction() const;

    // Of an impulse response: +1 or -1, and the low-frequency cutoff in Hz; 0 and 80 as reset left
    // them.
    int32_t polarity() const;
    int32_t cutoffHz() const;

    // Of the last impulse response, a value a bin: the phase in degrees, -180 to 180, with the bulk
    // delay removed; the score of the cutoff search, 0.01 to 1.
    std::span<const double> phaseDegrees() const;
    std::span<const double> cutoffCurve() const;

    bool valid = false;        // a response is loaded
    double sampleRate = 0.0;   // Hz
    int32_t length = 0;        // N, samples
    int32_t bins = 0;          // N/2 + 1
    SpectrumBuffer response;   // impulse response and its bins
    int32_t delaySamples = 0;  // onset minus onsetLead (ResponseShape.h); can be negative
    int64_t loads = 0;         // responses taken so far
    double timeMin = 0.0;      // smallest sample, never above 0
    double timeMax = 0.0;      // largest sample, never below 0

  private:
    void analyse();
    void searchCutoff() const;

    // What a filter does to the response, or is to do.
    struct Prediction {
        bool isPending = false;
        std::vector<double> numerator;
        std::vector<double> denominator;               // none for a FIR
        std::function<ComplexVector(int32_t)> filter;  // in place of both
        double gainDb = 0.0;
        SpectrumBuffer bins;
    };
    const ComplexVector& predicted(Prediction& prediction) const;

    mutable Prediction fir_;
    mutable Prediction iir_;
    mutable bool isPhasePending_ = false;
    mutable bool isCutoffPending_ = false;
    mutable bool isPolarityPending_ = false;
    mutable std::vector<double> phaseDegrees_;
    mutable std::vector<double> cutoffCurve_;
    mutable int32_t cutoffHz_ = 0;
    mutable int32_t polarity_ = 0;
};

}  // namespace tonvane
