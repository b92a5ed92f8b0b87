// Signals and figures that the tests compare with, made without the project's own numeric code.
#pragma once

#include <complex>
#include <cstdint>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "transform/FftTables.h"

namespace tonvane::tests {

// A suite that runs with transform tables of 32768 points.
class WithFftTables : public testing::Test {
  protected:
    static void SetUpTestSuite() { InitFftTables(32768); }
};

// n values between -1 and 1, the same at every call and on every machine.
std::vector<double> Noise(int32_t n, uint32_t seed = 1);

// Bin k of the unscaled discrete Fourier transform, summed term by term in long double.
std::complex<long double> DftBin(std::span<const double> samples, int64_t k);

// n samples of the discrete-time filter B/A for a unit impulse, by its difference equation; a[0] is
// 1.
std::vector<double> ImpulseResponse(std::span<const double> b, std::span<const double> a,
                                    int32_t n);

// The polynomial with these coefficients of z^-n, at hertz.
std::complex<double> PolynomialAt(std::span<const double> coefficients, double hertz,
                                  double sampleRate);

double Decibels(double amplitude);

}  // namespace tonvane::tests
