// The parts of the fit, and the fit of known filters.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

#include <gmock/gmock.h>

#include "design/BiquadSections.h"
#include "design/CascadeResponse.h"
#include "design/IirFitter.h"
#include "design/LatticeSolver.h"
#include "design/LeastSquares.h"
#include "design/PolynomialRoots.h"
#include "design/PowerGrid.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

auto near(const std::vector<double>& x, double tolerance = 1e-12) {
    return testing::Pointwise(testing::DoubleNear(tolerance), x);
}

// Roots given as real and imaginary parts, which RootsToBiquads arranges in place.
TEST(BiquadSections, PairsRiseInAngleAndRealRootsComeLast) {
    const auto sectionsOf = [](std::vector<double> re, std::vector<double> im) {
        std::vector<double> sections(3 * re.size() / 2);
        RootsToBiquads(re, im, sections, static_cast<int32_t>(re.size() / 2), 1e-15);
        return sections;
    };
    EXPECT_THAT(sectionsOf({-0.6, -0.6, 0, 0, 0.3, 0.3}, {0.2, -0.2, 0.9, -0.9, 0.4, -0.4}),
                near({1, -0.6, 0.25, 1, 0, 0.81, 1, 1.2, 0.4}));
    // Real roots stay in order of appearance, neighbours paired.
    EXPECT_THAT(
        sectionsOf({0.5, 0, 0, -0.25, 0.125, 0.3, 0.3, -0.5}, {0, 0.9, -0.9, 0, 0, 0.4, -0.4, 0}),
        near({1, -0.6, 0.25, 1, 0, 0.81, 1, -0.25, -0.125, 1, 0.375, -0.0625}));
    // A pair nearer to the axis than the tolerance counts as two real roots.
    EXPECT_THAT(sectionsOf({0.5, 0.5, 0, 0}, {5e-16, -5e-16, 0.9, -0.9}),
                near({1, 0, 0.81, 1, -1, 0.25}));
    // With one real root the last complex section takes its place in the arrays as a pair.
    EXPECT_THAT(sectionsOf({0.5, 0.3, 0.3, 0}, {0, 0.4, -0.4, 0.9}),
                near({1, -0.6, 0.25, 1, 0, 0.81}));
}

TEST(PoleRadii, AreThoseOfTheOuterPole) {
    // Real poles at 0.75 and -0.5 and turned over, and a complex pair.
    const Biquad sections[] = {
        {1, 0, 0, -0.25, -0.375}, {1, 0, 0, 0.25, -0.375}, {1, 0, 0, 1, 0.5}};
    EXPECT_THAT(PoleRadii(EncodeBiquads(sections)), near({0.75, 0.75, std::sqrt(0.5)}));
}

class Fit : public tests::WithFftTables {};

// The level drop of the clamp is in the taps; the words give the filter back without it.
TEST_F(Fit, AKnownFilterComesBackWithoutTheLevelDrop) {
    const struct {
        std::vector<double> b, a;
        double clampDb, toleranceDb;
    } cases[] = {{{1.0}, {1.0}, 0.0, 1e-4},
                 {{0.5, -0.7, 0.3}, {1.0, -1.6, 0.8}, -6.0, 0.01},
                 {{1.0, 0.2}, {1.0, -1.2, 0.9, -0.5, 0.2}, -12.0, 0.01}};
    const auto hertz = IirFitter::comparisonFrequencies();
    for (const auto& c : cases) {
        std::vector<double> taps(256);  // the filter's difference equation
        for (size_t t = 0; t < taps.size(); ++t) {
            taps[t] = t < c.b.size() ? c.b[t] * std::pow(10.0, c.clampDb / 20.0) : 0.0;
            for (size_t i = 1; i < c.a.size() && i <= t; ++i) {
                taps[t] -= c.a[i] * taps[t - i];
            }
        }
        IirFitter fitter;
        fitter.configure(48000, taps, 7, 4096, c.clampDb);
        fitter.fit();
        const std::vector<double> levels = CascadeResponseDb(fitter.coefficientWords, hertz, 48000);
        for (size_t i = 0; i < hertz.size(); ++i) {
            const auto expected = tests::PolynomialAt(c.b, hertz[i], 48000) /
                                  tests::PolynomialAt(c.a, hertz[i], 48000);
            ASSERT_NEAR(levels[i], tests::Decibels(std::abs(expected)), c.toleranceDb) << i;
        }
    }
}

// By one form of the recursion alone the other end of the band is off by 1e-10.
TEST(PowerGrid, IsAsExactAtBothEndsOfTheBandAndBeyond) {
    std::vector<double> angles, powers(700);
    for (int i = 0; i < 700; ++i) {
        angles.push_back(-0.001 - 0.01 * i);
    }
    PowerGrid grid;
    grid.build(angles);
    const std::vector<double> c = tests::Noise(256);
    grid.power(c, powers);
    for (size_t i = 0; i < angles.size(); ++i) {
        const auto z = tests::PolynomialAt(c, angles[i] / (2.0 * std::numbers::pi), 1.0);
        ASSERT_NEAR(powers[i], std::norm(z), 2e-11) << angles[i];
    }
}

TEST(LatticeSolver, EndsWhereNothingIsLeftAndLetsNaNThrough) {
    LatticeSolver solver;
    solver.resize(3, 52);
    const std::vector<double> p = tests::Noise(37);
    std::vector<double> y(52), b(4), a(4);
    std::ranges::transform(p, y.begin() + 2, [](double x) { return 0.3 * x; });
    EXPECT_EQ(solver.solve(p, y, 0.25, b, a), 2);
    EXPECT_THAT(b, near({0.25, 0.0, 0.3, 0.0}));
    EXPECT_THAT(a, near({1.0, 0.0, 0.0, 0.0}));
    y[30] = std::numeric_limits<double>::quiet_NaN();
    solver.solve(p, y, 0.25, b, a);
    EXPECT_THAT(b, testing::Each(testing::IsNan()));
}

// LAPACK ends the program on some of these, does not end on others, and gives numbers for a few.
TEST(Lapack, WhatIsNoNumberGoesInAndComesOut) {
    using Values = std::numeric_limits<double>;
    for (const double bad : {Values::quiet_NaN(), Values::infinity()}) {
        for (const size_t place : {0U, 1U, 2U}) {
            std::vector<double> equation{1.0, 2.0, 3.0, 0.0};  // a row, and its right side
            equation[place] = bad;
            const auto solution = std::span(equation).last(2);
            LeastSquaresSolve(std::span(equation).first(2), solution, 1, 2);
            EXPECT_THAT(solution, testing::Each(testing::IsNan()));
        }
        std::vector<double> re(2), im(2);
        PolynomialRoots(std::vector{1.0, bad, 2.0}, re, im, 2, true);
        EXPECT_THAT(re, testing::Each(testing::IsNan()));
        EXPECT_THAT(im, testing::Each(testing::IsNan()));
    }
}

}  // namespace
}  // namespace tonvane
