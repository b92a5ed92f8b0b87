#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "filters/Polynomial.h"
#include "filters/RationalFunction.h"

namespace tonvane {
namespace {

using testing::ElementsAre;

std::vector<double> valuesOf(const CPolynomial& p) {
    return {p.coefficients.get(), p.coefficients.get() + p.degree + 1};
}

TEST(Polynomial, AnEmptyOneIsNoZero) {
    CPolynomial p;
    p.Trim();
    EXPECT_EQ((p * p).degree, -1);
    EXPECT_THAT(valuesOf(p * CPolynomial{1.0, 2.0, 3.0}), ElementsAre(0.0));
    p += {1.0, 2.0};
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 2.0));
}

TEST(Polynomial, AnOperandMayBeTheTarget) {
    CPolynomial p{1.0, 1.0};
    const CPolynomial& same = p;
    p *= same;
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 2.0, 1.0));
    p += same;
    EXPECT_THAT(valuesOf(p), ElementsAre(2.0, 4.0, 2.0));
    p = same;
    p -= same;
    EXPECT_THAT(valuesOf(p), ElementsAre(0.0));
}

TEST(Polynomial, TrimTakesExactZerosAlone) {
    CPolynomial p{1.0, 1e-300, 0.0};
    p.Trim();
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 1e-300));
    p /= 1e300;  // underflows to zero at the top, and a division does not trim
    EXPECT_EQ(p.degree, 1);
}

TEST(Polynomial, StorageStaysAndKeepsNothingOfTheFormerValue) {
    CPolynomial p{1.0, 2.0, 3.0};
    p = 5.0;
    testing::internal::CaptureStderr();
    p.Reserve(std::numeric_limits<int32_t>::max());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "not enough memory\n");
    EXPECT_EQ(p.capacity, 3);
    p += {0.0, 1.0, 1.0};
    EXPECT_THAT(valuesOf(p), ElementsAre(5.0, 1.0, 1.0));
}

TEST(ComplexPolynomial, IsSummedFromTheConstant) {
    const CComplexPolynomial p(CPolynomial{1.0, 2.0, 3.0});
    EXPECT_EQ(p.Evaluate(1.0, -1.0), std::complex<double>(3.0, -8.0));
    // From the top the large terms would cancel first and leave 1.
    EXPECT_EQ(CComplexPolynomial(CPolynomial{1.0, 1e16, -1e16}).Evaluate(1.0, 0.0), 0.0);
}

TEST(RationalFunction, SubstitutionTakesTheDenominatorAlong) {
    const CRationalFunction inner(1.0, {1.0, 1.0});  // 1/(1 + x)
    const CRationalFunction square = CRationalFunction({0.0, 0.0, 1.0}, 1.0).Substitute(inner);
    EXPECT_THAT(valuesOf(square.denominator), ElementsAre(1.0, 2.0, 1.0));
    const CRationalFunction over = CRationalFunction(1.0, {0.0, 0.0, 1.0}).Substitute(inner);
    EXPECT_THAT(valuesOf(over.numerator), ElementsAre(1.0, 2.0, 1.0));
}

TEST(RationalFunction, NormalizedHasAConstantOfExactlyOne) {
    CRationalFunction h(2.0, {49.0, 98.0});  // 49 * (1/49) is not 1 in double precision
    h.Normalize();
    EXPECT_EQ(h.denominator[0], 1.0);
}

}  // namespace
}  // namespace tonvane
