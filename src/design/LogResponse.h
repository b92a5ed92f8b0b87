// Magnitudes of a rational transfer function in z^-1.
#pragma once

#include <complex>
#include <cstdint>
#include <span>

#include "transform/ComplexVector.h"

namespace tonvane {

// out[i] = log10(|B|/|A|) at exp(j*omega[i]), the decimal logarithm of the amplitude. b and a are
// coefficients of the powers of exp(j*omega), the constant first; an empty a stands for 1.
void logResponse(std::span<const double> b, std::span<const double> a,
                 std::span<const double> omega, std::span<double> out);

// The same at the points exp(j*omega[i]) themselves, for a grid that is used again and again.
void logResponseAt(std::span<const double> b, std::span<const double> a,
                   std::span<const std::complex<double>> points, std::span<double> out);

// out[i] *= |B|/|A| at these points: for a chain of filters.
void multiplyResponseAt(std::span<const double> b, std::span<const double> a,
                        std::span<const std::complex<double>> points, std::span<double> out);

// exp(j*omega[i]).
ComplexVector UnitCirclePoints(std::span<const double> omega);

// out[i] = (|B|/|A|, 0) at i*pi/(size - 1), from 0 to half the sample rate.
void magnitudeCurve(std::span<const double> b, std::span<const double> a, ComplexVector& out);

}  // namespace tonvane
