// A linear sweep from 0 Hz to half the sample rate, silent at both ends of the period; the
// deconvolution that every test signal shares.
#pragma once

#include "signal/TestSignal.h"

namespace tonvane {

class CChirpSignal : public CTestSignal {
  public:
    CChirpSignal();

    ComplexVector& spectrum() override;
    std::span<const double> samples() override;
    std::span<const double> generate() override;
    std::span<const double> deconvolve(std::span<const double> captured) override;

    double spanFraction = 0.0;   // share of the period that the chirp occupies
    double peakAmplitude = 0.0;  // peak of the chirp in the time domain, full scale 1.0
    double binMagnitude = 0.0;   // magnitude of every chirp bin
    SpectrumBuffer excitation;   // both forms are kept: the bins are the divisor later
    SpectrumBuffer response;     // result of the deconvolution
    SpectrumBuffer capture;      // the captured period and its spectrum
};

}  // namespace tonvane
