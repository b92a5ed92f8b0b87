// The pairing of roots, and the fit of known filters.
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
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::ElementsAreArray;
using Complex = std::complex<double>;

auto near(const std::vector<double>& x, double tolerance = 1e-12) {
    return testing::Pointwise(testing::DoubleNear(tolerance), x);
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
