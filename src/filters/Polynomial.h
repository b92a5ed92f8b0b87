// Dense polynomials with real or complex coefficients, ascending powers.
#pragma once

#include <initializer_list>

#include "filters/CoefficientArray.h"

namespace tonvane {

// A result that finds no memory leaves the left operand as it was, after the text on standard
// error. An empty polynomial adds nothing; a product with it has no coefficient but zeros.
class CPolynomial : public CoefficientArray<double> {
  public:
    CPolynomial() = default;
    CPolynomial(double constant) : CPolynomial({constant}) {}
    // Coefficients as they stand, a zero at the top included.
    CPolynomial(std::initializer_list<double> ascending);

    // The polynomial x.
    static CPolynomial Identity() { return {0.0, 1.0}; }

    // Sets the coefficients first to last to 0.0, as far as the capacity goes; a last of -1 stands
    // for the degree.
    void ZeroRange(int32_t first, int32_t last);

    // Drops coefficients at the top that are exactly zero; one coefficient stays.
    void Trim();

    // Results are trimmed, those of a division are not. *= and /= return a copy of the result.
    void operator+=(const CPolynomial& other);
    void operator-=(const CPolynomial& other);
    CPolynomial operator*=(const CPolynomial& other);
    CPolynomial operator/=(double divisor);

    // This polynomial with `inner` in the place of x.
    [[nodiscard]] CPolynomial Substitute(const CPolynomial& inner) const;
};

CPolynomial operator+(CPolynomial left, const CPolynomial& right);
CPolynomial operator-(CPolynomial left, const CPolynomial& right);
CPolynomial operator*(CPolynomial left, const CPolynomial& right);
CPolynomial operator/(CPolynomial left, double divisor);

class CComplexPolynomial : public CoefficientArray<std::complex<double>> {
  public:
    CComplexPolynomial() = default;
    // With imaginary parts of zero.
    explicit CComplexPolynomial(const CPolynomial& real);

    // The value at re + j*im, summed from the lowest power up; 0 when empty.
    [[nodiscard]] std::complex<double> Evaluate(double re, double im) const;
};

}  // namespace tonvane
