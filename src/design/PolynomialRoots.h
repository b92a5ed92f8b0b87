// Roots of a real polynomial.
#pragma once

#include <cstdint>
#include <span>

namespace tonvane {

// The `degree` roots as the eigenvalues of the companion matrix, by LAPACK's dgees. `coefficients`
// has degree + 1 values, the leading one first or last as leadingFirst says; it is divided by, so
// that a leading zero gives NaN or infinite roots. Real and imaginary parts go to rootsRe and
// rootsIm, conjugate pairs adjacent with the positive imaginary part first.
void PolynomialRoots(std::span<const double> coefficients, std::span<double> rootsRe,
                     std::span<double> rootsIm, int32_t degree, bool leadingFirst);

}  // namespace tonvane
