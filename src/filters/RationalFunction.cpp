#include "filters/RationalFunction.h"

#include <algorithm>
#include <vector>

namespace tonvane {

namespace {

// The powers 0 to `highest`.
std::vector<CPolynomial> powersOf(const CPolynomial& base, int32_t highest) {
    std::vector<CPolynomial> powers{1.0};
    for (int32_t power = 0; power < highest; ++power) {
        powers.push_back(powers.back() * base);
    }
    return powers;
}

// outer(P/Q) times Q to the degree of outer.
CPolynomial substituteHomogeneous(const CPolynomial& outer, const std::vector<CPolynomial>& powersP,
                                  const std::vector<CPolynomial>& powersQ) {
    CPolynomial sum = 0.0;
    for (int32_t i = 0; i <= outer.degree; ++i) {
        sum += outer[i] * powersP[i] * powersQ[outer.degree - i];
    }
    return sum;
}

}  // namespace

void CRationalFunction::operator*=(const CRationalFunction& other) {
    numerator *= other.numerator;
    denominator *= other.denominator;
}

CRationalFunction CRationalFunction::Substitute(const CRationalFunction& inner) const {
    const int32_t above = numerator.degree;
    const int32_t below = denominator.degree;
    const auto powersP = powersOf(inner.numerator, std::max(above, below));
    const auto powersQ = powersOf(inner.denominator, std::max(above, below));
    CRationalFunction result(substituteHomogeneous(numerator, powersP, powersQ),
                             substituteHomogeneous(denominator, powersP, powersQ));
    for (int32_t missing = below - above; missing > 0; --missing) {
        result.numerator *= inner.denominator;
    }
    for (int32_t missing = above - below; missing > 0; --missing) {
        result.denominator *= inner.denominator;
    }
    return result;
}

void CRationalFunction::Normalize() {
    if (IsEmpty()) {
        return;
    }
    const double scale = 1.0 / denominator[0];
    numerator *= scale;
    denominator *= scale;
    denominator[0] = 1.0;
}

}  // namespace tonvane
