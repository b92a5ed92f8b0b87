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

// The polynomial with these coefficients of z^-n, at hertz, summed term by term in long double.
// With a bin for the hertz and their number for the rate it is the discrete Fourier transform.
std::complex<double> PolynomialAt(std::span<const double> coefficients, double hertz,
                                  double sampleRate);

double Decibels(double amplitude);

}  // namespace tonvane::tests
