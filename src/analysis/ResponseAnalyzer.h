// The one loudspeaker response of a tuning run and what is read from it.
//
// A response comes as an impulse response, as a captured period of a test signal, or as magnitudes
// without a time signal. The transform tables must serve its length. Nothing is reported: a bad
// input gives bad figures. Used by one thread.
#pragma once

#include <cstdint>
#include <span>

#include "signal/TestSignal.h"
#include "transform/SampleArray.h"
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

    // The response through a FIR filter, into firPrediction's bins; gainDb (dB, zero or negative)
    // is the level drop of the design, which is taken out again. Call after a load.
    void predictFir(std::span<const double> taps, double gainDb);

    // The same through numerator/denominator (coefficient of z^-n at index n), into iirPrediction's
    // bins. A denominator that vanishes on a bin gives NaN there.
    void predictIir(std::span<const double> numerator, std::span<const double> denominator,
                    double gainDb);

    // The same through a filter given by its response at the `bins` bins, without a level drop.
    void predictFilter(const ComplexVector& filter);

    bool valid = false;             // a response is loaded
    double sampleRate = 0.0;        // Hz
    int32_t length = 0;             // N, samples
    int32_t bins = 0;               // N/2 + 1
    SpectrumBuffer response;        // impulse response and its bins
    SpectrumBuffer firPrediction;   // samples: the taps; bins: response through the FIR
    SpectrumBuffer iirPrediction;   // samples: the numerator; bins: response through the biquads
    SpectrumBuffer iirDenominator;  // the denominator and its bins
    SpectrumBuffer polarityProbe;   // samples: the band-limited, gated start of the response
    SampleArray phaseDegrees;       // `bins` values, degrees in -180 .. 180, bulk delay removed
    SampleArray cutoffCurve;        // `bins` values, score of the cutoff search, 0.01 .. 1
    int32_t polarity = 0;           // +1, -1; 0 for unknown
    int32_t delaySamples = 0;       // onset minus onsetLead (ResponseShape.h); can be negative
    int32_t cutoffHz = 0;           // low-frequency cutoff found
    double timeMin = 0.0;           // smallest sample, never above 0
    double timeMax = 0.0;           // largest sample, never below 0

  private:
    void analyse();
};

}  // namespace tonvane
