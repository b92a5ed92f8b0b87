// A signal in both of its forms: N real samples and N/2 + 1 complex bins.
//
// Both transforms are unscaled, X[k] = sum of x[t]*exp(-j*2*pi*k*t/N) and back, so that forward
// followed by inverse multiplies the signal by N; callers divide. Neither transform disturbs the
// form that it reads, and neither allocates. One buffer belongs to one thread at a time.
#pragma once

#include <cstdint>
#include <span>

#include "transform/ComplexVector.h"
#include "transform/SampleArray.h"

namespace tonvane {

struct SpectrumBuffer {
    int32_t length = 0;      // N
    int32_t bins = 0;        // N/2 + 1
    SampleArray samples;     // time form, the first N elements
    ComplexVector spectrum;  // frequency form; bin k lies at k*fs/N

    // Sets the length to n, a power of two of at least 4. False, with nothing changed, when n is
    // odd, below 2 or above the length of the FFT tables. Samples of an earlier use survive a
    // resize to the same or a shorter length. An even n that is no power of two is accepted and
    // transforms to meaningless values.
    bool resize(int32_t n);

    // Samples to bins. The imaginary parts of bins 0 and N/2 come out exactly 0.
    void forward();

    // Bins to samples. The imaginary parts of bins 0 and N/2 are not read.
    void inverse();

    // Writes values[k] as the real part and 0 as the imaginary part of each bin; values holds at
    // least `bins` elements.
    void setSpectrumReal(std::span<const double> values);

    // The N samples.
    [[nodiscard]] std::span<double> time() { return samples.first(length); }
    [[nodiscard]] std::span<const double> time() const { return samples.first(length); }

    // Copies the values to the front of the samples and zeroes the rest of the N.
    void setSamplesPadded(std::span<const double> values);
};

}  // namespace tonvane
