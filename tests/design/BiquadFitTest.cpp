// The services behind the biquads, and the fit of known filters.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/BiquadWords.h"
#include "design/BiquadSections.h"
#include "design/CascadeResponse.h"
#include "design/IirFitter.h"
#include "design/LeastSquares.h"
#include "design/LogResponse.h"
#include "design/PolynomialRoots.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::ElementsAreArray;
using Complex = std::complex<double>;

auto near(const std::vector<double>& x, double tolerance = 1e-12) {
    return testing::Pointwise(testing::DoubleNear(tolerance), x);
}

std::vector<double> solve(const std::vector<double>& matrix, const std::vector<double>& rhs) {
    const auto rows = static_cast<int32_t>(rhs.size());
    const auto cols = static_cast<int32_t>(matrix.size() / rhs.size());
    std::vector<double> solution(static_cast<size_t>(cols));
    LeastSquaresSolve(matrix, rhs, solution, rows, cols);
    return solution;
}

TEST(LeastSquares, SolvesInTheLeastSquaresAndMinimumNormSense) {
    // 2 + 3*t at t = 0 .. 3 plus a residual that is orthogonal to both columns.
    EXPECT_THAT(solve({1, 0, 1, 1, 1, 2, 1, 3}, {2 + 1, 5 - 1, 8 - 1, 11 + 1}), near({2, 3}));
    EXPECT_THAT(solve({1, 1, 1, 1}, {2, 4}), near({1.5, 1.5}));  // equal columns
    EXPECT_THAT(solve({3, 4}, {25}), near({3, 4}));              // more unknowns than rows

    // Larger than the solver's leaves, with a known solution.
    const std::vector<double> matrix = tests::Noise(120 * 60);
    const std::vector<double> expected = tests::Noise(60, 2);
    std::vector<double> rhs(120, 0.0);
    for (size_t i = 0; i < matrix.size(); ++i) {
        rhs[i / 60] += matrix[i] * expected[i % 60];
    }
    EXPECT_THAT(solve(matrix, rhs), near(expected));
}

TEST(PolynomialRoots, AreFoundInEitherOrderOfCoefficients) {
    // (z - 0.5)*(z + 0.25)*(z^2 - 1.2*z + 0.72), times 2; the pair is 0.6 +- 0.6j.
    std::vector<double> coefficients = {2.0, -2.9, 1.79, -0.06, -0.18};
    std::vector<double> re(4);
    std::vector<double> im(4);
    for (const bool leadingFirst : {true, false}) {
        PolynomialRoots(coefficients, re, im, 4, leadingFirst);
        const auto upper = std::ranges::max_element(im) - im.begin();
        ASSERT_LT(upper, 3);
        EXPECT_NEAR(im[upper], 0.6, 1e-13);
        EXPECT_EQ(im[upper + 1], -im[upper]);
        EXPECT_EQ(re[upper + 1], re[upper]);
        std::ranges::sort(re);
        EXPECT_THAT(re, near({-0.25, 0.5, 0.6, 0.6}));
        std::ranges::reverse(coefficients);
    }
    PolynomialRoots(std::vector{0.0, 1.0, 1.0, 1.0, 1.0}, re, im, 4, true);
    EXPECT_TRUE(std::isnan(re[0]));
}

TEST(BiquadSections, PairsRiseInAngleAndRealRootsComeLast) {
    const auto sectionsOf = [](const std::vector<Complex>& roots) {
        std::vector<double> re(roots.size());
        std::vector<double> im(roots.size());
        std::ranges::transform(roots, re.begin(), [](Complex root) { return root.real(); });
        std::ranges::transform(roots, im.begin(), [](Complex root) { return root.imag(); });
        std::vector<double> sections(3 * roots.size() / 2);
        RootsToBiquads(re, im, sections, static_cast<int32_t>(roots.size() / 2), 1e-15);
        return sections;
    };
    const auto c = [](Complex z) { return std::conj(z); };
    const Complex low(0.3, 0.4);
    const Complex mid(0.0, 0.9);
    const Complex high(-0.6, 0.2);

    EXPECT_THAT(sectionsOf({high, c(high), mid, c(mid), low, c(low)}),
                near({1, -0.6, 0.25, 1, 0, 0.81, 1, 1.2, 0.4}));
    // Real roots stay in order of appearance, neighbours paired.
    EXPECT_THAT(sectionsOf({0.5, mid, c(mid), -0.25, 0.125, low, c(low), -0.5}),
                near({1, -0.6, 0.25, 1, 0, 0.81, 1, -0.25, -0.125, 1, 0.375, -0.0625}));
    // A pair nearer to the axis than the tolerance counts as two real roots.
    EXPECT_THAT(sectionsOf({{0.5, 5e-16}, {0.5, -5e-16}, mid, c(mid)}),
                near({1, 0, 0.81, 1, -1, 0.25}));
    // With one real root the last complex section takes its place in the arrays as a pair.
    EXPECT_THAT(sectionsOf({0.5, low, c(low), mid}), near({1, -0.6, 0.25, 1, 0, 0.81}));
    EXPECT_THAT(sectionsOf({0.0, 0.0}), near({1, 0, 0}));
}

TEST(LogResponse, IsTheMagnitudeOfTheRationalFunction) {
    // |3/(1 - 0.5*exp(-jw))|^2 = 9/(1.25 - cos(w))
    const std::vector<double> b = {3.0};
    const std::vector<double> a = {1.0, -0.5};
    std::vector<double> angles(5);
    std::vector<double> expected(5);
    for (size_t i = 0; i < 5; ++i) {
        angles[i] = static_cast<double>(i) * std::numbers::pi / 4.0;
        expected[i] = 3.0 / std::sqrt(1.25 - std::cos(angles[i]));
    }
    ComplexVector curve(5);
    magnitudeCurve(b, a, curve);
    std::vector<double> logs(5);
    logResponse(b, a, angles, logs);
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_NEAR(std::abs(curve[i] - expected[i]), 0.0, 1e-14);
        EXPECT_NEAR(logs[i], std::log10(expected[i]), 1e-15);
    }
    logResponse(b, {}, angles, logs);
    EXPECT_THAT(logs, near(std::vector<double>(5, std::log10(3.0))));
}

constexpr int32_t rate = 48000;

class Fit : public tests::WithFftTables {
  protected:
    void fitTo(const std::vector<double>& taps, double gainClampDb) {
        fitter.configure(rate, taps, 7, 4096, gainClampDb);
        fitter.fit();
    }

    // The largest distance in dB of the words' response from numerator/denominator.
    double distanceFrom(const std::vector<double>& b, const std::vector<double>& a) {
        const auto hertz = IirFitter::comparisonFrequencies();
        const std::vector<double> dB = CascadeResponseDb(fitter.coefficientWords, hertz, rate);
        double largest = 0.0;
        for (size_t i = 0; i < hertz.size(); ++i) {
            const Complex expected =
                tests::PolynomialAt(b, hertz[i], rate) / tests::PolynomialAt(a, hertz[i], rate);
            largest = std::max(largest, std::fabs(dB[i] - tests::Decibels(std::abs(expected))));
        }
        return largest;
    }

    IirFitter fitter;
};

TEST_F(Fit, AUnitImpulsePassesThrough) {
    std::vector<double> taps(256, 0.0);
    taps[0] = 1.0;
    fitTo(taps, 0.0);
    EXPECT_LT(distanceFrom({1.0}, {1.0}), 1e-4);
    EXPECT_NEAR(IirFitter::comparisonFrequencies().front(), 50.0, 1e-9);
    EXPECT_NEAR(IirFitter::comparisonFrequencies().back(), 15000.0, 1e-9);
}

// The level drop of the clamp is in the taps; the words give the filter back without it.
TEST_F(Fit, AKnownCascadeIsFoundSectionBySectionWithoutTheLevelDrop) {
    std::vector<double> zeros;
    std::vector<double> poles;
    std::vector<double> b = {1.0};
    std::vector<double> a = {1.0};
    const auto addSection = [](double hertz, double radius, std::vector<double>& sections,
                               std::vector<double>& polynomial) {
        const double c1 = -2.0 * radius * std::cos(2.0 * std::numbers::pi * hertz / rate);
        const double c2 = radius * radius;
        sections.insert(sections.end(), {1.0, c1, c2});
        polynomial.resize(polynomial.size() + 2);
        for (size_t i = polynomial.size(); i-- > 0;) {
            polynomial[i] += i > 0 ? c1 * polynomial[i - 1] : 0.0;
            polynomial[i] += i > 1 ? c2 * polynomial[i - 2] : 0.0;
        }
    };
    for (const double hertz : {600, 2000, 4000, 7000, 11000, 15000, 20000}) {
        addSection(hertz, 0.93, zeros, b);
        addSection(1.1 * hertz, 0.9, poles, a);
    }
    std::vector<double> taps = tests::ImpulseResponse(b, a, 256);
    std::ranges::for_each(b, [](double& coefficient) { coefficient *= 0.5; });
    std::ranges::for_each(taps, [](double& tap) { tap *= 0.5 * std::pow(10.0, -6.0 / 20.0); });
    fitTo(taps, -6.0);
    EXPECT_LT(distanceFrom(b, a), 0.05);
    EXPECT_THAT(fitter.numeratorSections, near(zeros, 1e-3));
    EXPECT_THAT(fitter.denominatorSections, near(poles, 1e-3));
    EXPECT_NEAR(LargestPoleRadius(fitter.coefficientWords), 0.9, 1e-3);
}

TEST_F(Fit, AFirOfNoNumbersEndsWithoutAResult) {
    fitTo(std::vector<double>(256, std::numeric_limits<double>::quiet_NaN()), 0.0);
    EXPECT_EQ(fitter.bestPass, -1);
    EXPECT_THAT(fitter.coefficientWords, ElementsAreArray(std::vector<int32_t>(35, 0)));
}

}  // namespace
}  // namespace tonvane
