// The quotient of two real polynomials in one variable.
#pragma once

#include "filters/Polynomial.h"

namespace tonvane {

class CRationalFunction {
  public:
    // Empty over empty: no function.
    CRationalFunction() = default;
    CRationalFunction(double constant) : numerator(constant), denominator(1.0) {}
    CRationalFunction(const CPolynomial& above, const CPolynomial& below)
        : numerator(above), denominator(below) {}

    [[nodiscard]] bool IsEmpty() const { return denominator.degree < 0; }

    void operator*=(const CRationalFunction& other);

    // This function with `inner` in the place of its variable. Common factors are not cancelled.
    [[nodiscard]] CRationalFunction Substitute(const CRationalFunction& inner) const;

    // Scales both parts so that the denominator's constant coefficient is exactly 1. A constant of
    // zero gives infinities and NaN; an empty function stays.
    void Normalize();

    CPolynomial numerator;
    CPolynomial denominator;
};

}  // namespace tonvane
