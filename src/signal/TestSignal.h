// One period of a deterministic excitation, and the way back from a captured period to an impulse
// response.
//
// The excitation is periodic with the transform length N, so that dividing by its spectrum is an
// exact circular deconvolution: no window, no overlap. Samples are at full scale +-1.0.
#pragma once

#include <cstdint>
#include <span>

#include "transform/SpectrumBuffer.h"

namespace tonvane {

class CTestSignal {
  public:
    virtual ~CTestSignal() = default;

    // The N/2 + 1 bins of the excitation; its samples are their unscaled inverse transform.
    virtual ComplexVector& spectrum() = 0;

    // The N samples of the excitation, valid after generate().
    virtual std::span<const double> samples() = 0;

    // Fills the excitation from order, sampleRate and the band; returns samples(). The transform
    // tables must exist and serve N points.
    virtual std::span<const double> generate() = 0;

    // Takes N captured samples in step with the excitation and returns the N samples of the
    // response at unit scale, owned by the signal and valid until the next call. Bins outside
    // lowFrequency .. highFrequency come out zero, and so do those that the excitation does not
    // have. generate() must have run on this object.
    virtual std::span<const double> deconvolve(std::span<const double> captured) = 0;

    // Sets order and length = 2^order.
    void setOrder(int order);

    int32_t order = 0;          // log2 of the length
    int32_t length = 0;         // N, samples
    int32_t sampleRate = 0;     // Hz
    int32_t highFrequency = 0;  // Hz, upper band edge, inclusive
    int32_t lowFrequency = 0;   // Hz, lower band edge, inclusive

  protected:
    CTestSignal() = default;
    CTestSignal(const CTestSignal&) = delete;
    CTestSignal& operator=(const CTestSignal&) = delete;
};

}  // namespace tonvane
