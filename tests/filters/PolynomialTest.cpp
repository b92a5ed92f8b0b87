#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "filters/Polynomial.h"
#include "filters/RationalFunction.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

std::vector<double> valuesOf(const CPolynomial& p) {
    return {p.coefficients.get(), p.coefficients.get() + p.degree + 1};
}

TEST(Polynomial, EmptyIsNotZero) {
    CPolynomial p;
    EXPECT_EQ(p.degree, -1);
    EXPECT_EQ(p.coefficients, nullptr);
    p.Trim();
    EXPECT_EQ(p.degree, -1);
    EXPECT_EQ((p * p).degree, -1);
    EXPECT_THAT(valuesOf(p * CPolynomial{1.0, 2.0, 3.0}), ElementsAre(0.0));
    p += {1.0, 2.0};
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 2.0));
}

TEST(Polynomial, AnOperandThatIsAlsoTheTargetIsReadAfterItChanged) {
    CPolynomial p{1.0, 1.0};
    const CPolynomial& same = p;
    const CPolynomial returned = p *= same;
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 2.0, 1.0));
    EXPECT_THAT(valuesOf(returned), ElementsAre(1.0, 2.0, 1.0));
    p += same;
    EXPECT_THAT(valuesOf(p), ElementsAre(2.0, 4.0, 2.0));
    p = same;
    EXPECT_THAT(valuesOf(p), ElementsAre(2.0, 4.0, 2.0));
    p -= same;
    EXPECT_THAT(valuesOf(p), ElementsAre(0.0));
}

TEST(Polynomial, TrimTakesMoreThanExactZeros) {
    EXPECT_THAT(valuesOf(CPolynomial{1.0, 1.0} - CPolynomial{1.0, 1.0}), ElementsAre(0.0));
    CPolynomial p{1.0, 1e-300, 0.0};
    p.Trim();
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 1e-300));
    p /= 1e300;  // underflows to zero at the top, and a division does not trim
    EXPECT_EQ(p.degree, 1);
    EXPECT_EQ(p[1], 0.0);
}

TEST(Polynomial, StorageGrowsByMoreThanAskedOrShrinks) {
    CPolynomial p{1.0, 2.0};
    p.Reserve(6);
    EXPECT_EQ(p.capacity, 7);
    EXPECT_EQ(p.degree, 1);
    p.Reserve(3);
    p = CPolynomial(3.0) + CPolynomial(4.0);
    EXPECT_EQ(p.capacity, 7);
    EXPECT_THAT(valuesOf(p), ElementsAre(7.0));
    CPolynomial copy = p;
    EXPECT_EQ(copy.capacity, 1);
    copy[0] = 9.0;
    EXPECT_EQ(p[0], 7.0);
}

TEST(Polynomial, CoefficientsOfAFormerValueComeBack) {
    CPolynomial p{1.0, 2.0, 3.0};
    p = 5.0;
    p += {0.0, 1.0, 1.0};
    EXPECT_THAT(valuesOf(p), ElementsAre(5.0, 1.0, 1.0));
    p = 5.0;
    p -= {0.0, 1.0, 1.0};
    EXPECT_THAT(valuesOf(p), ElementsAre(5.0, -1.0, -1.0));
}

TEST(Polynomial, ZeroRangeMissesOrOverruns) {
    CPolynomial p{1.0, 2.0, 3.0};
    p.ZeroRange(1, 1);
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 0.0, 3.0));
    p.ZeroRange(2, -1);
    EXPECT_THAT(valuesOf(p), ElementsAre(1.0, 0.0, 0.0));
    p.ZeroRange(std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max());
    EXPECT_THAT(valuesOf(p), ElementsAre(0.0, 0.0, 0.0));
}

TEST(Polynomial, OutOfMemoryChangesThePolynomialOrIsSilent) {
    CPolynomial real{1.0, 2.0};
    CComplexPolynomial complex(real);
    CaptureStderr();
    real.Reserve(std::numeric_limits<int32_t>::max());
    complex.Reserve(std::numeric_limits<int32_t>::max() - 1);
    EXPECT_EQ(GetCapturedStderr(), "not enough memory\nnot enough memory\n");
    EXPECT_THAT(valuesOf(real), ElementsAre(1.0, 2.0));
    EXPECT_EQ(real.capacity, 2);
    EXPECT_EQ(complex.capacity, 2);
    EXPECT_EQ(complex.Evaluate(1.0, 0.0), 3.0);
}

TEST(ComplexPolynomial, ValueIsWrongOrSummedFromTheTop) {
    const CComplexPolynomial p(CPolynomial{1.0, 2.0, 3.0});
    EXPECT_EQ(p.Evaluate(0.0, 2.0), std::complex<double>(-11.0, 4.0));
    EXPECT_EQ(p.Evaluate(1.0, -1.0), std::complex<double>(3.0, -8.0));
    EXPECT_EQ(CComplexPolynomial().Evaluate(1.0, 1.0), 0.0);
    // From the top the large terms would cancel first and leave 1.
    EXPECT_EQ(CComplexPolynomial(CPolynomial{1.0, 1e16, -1e16}).Evaluate(1.0, 0.0), 0.0);
    CComplexPolynomial grown(CPolynomial{5.0});
    grown.Reserve(2);
    EXPECT_EQ(grown[2], 0.0);
}

TEST(RationalFunction, NormalizeLeavesTheConstantInexact) {
    CRationalFunction h(2.0, 4.0);
    h.Normalize();
    EXPECT_THAT(valuesOf(h.numerator), ElementsAre(0.5));
    EXPECT_THAT(valuesOf(h.denominator), ElementsAre(1.0));
    h = CRationalFunction(1.0, {49.0, 98.0});  // 49 * (1/49) is not 1 in double precision
    h.Normalize();
    EXPECT_EQ(h.denominator[0], 1.0);
    CRationalFunction empty;
    empty.Normalize();
    EXPECT_TRUE(empty.IsEmpty());
}

}  // namespace
}  // namespace tonvane
