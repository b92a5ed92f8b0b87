// Curves of many kinds, and the filters for them, read back from their words.
#include <cmath>
#include <vector>

#include <gmock/gmock.h>

#include "design/CascadeResponse.h"
#include "refine/RefinedFit.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

// The level of an analog peak, dB.
double peak(double hertz, double center, double q, double db) {
    const double x = hertz / center - center / hertz;
    const double a = std::pow(10.0, db / 40.0);
    return 10.0 * std::log10((x * x + a * a / q / q) / (x * x + 1.0 / a / a / q / q));
}

double slope(double hertz) {
    return -3.0 * std::log10(1.0 + hertz / 20.0);
}

struct Curve {
    const char* name;
    int32_t rate;
    double clampDb;
    double (*level)(double hertz);  // dB
    double rmsDb;                   // how close the words have to come

    // On the design grid, with a peak added.
    [[nodiscard]] DesignCurve power(double peakDb = 0.0) const {
        DesignCurve result{};
        for (int32_t i = 0; i < designPoints; ++i) {
            const double hertz = std::max(1.0, 1.0 * i * rate / designLength);
            const double moved = level(hertz) + peak(hertz, 700.0, 2.0, peakDb);
            result[i] = std::pow(10.0, std::min(moved, 0.0) / 10.0);
        }
        return result;
    }
};

const Curve curves[] = {
    {"peaks", 48000, -6.0,
     [](double f) { return peak(f, 150, 1.5, -8) + peak(f, 2500, 4, -5) + peak(f, 6000, 1, -6); },
     0.03},
    {"slope", 44100, -12.0, slope, 0.03},
    {"clipped", 48000, -1.0, [](double f) { return 5.0 * std::sin(3.0 * std::log(f)); }, 0.5},
    {"notch", 96000, -3.0, [](double f) { return peak(f, 3000, 8, -30); }, 0.5},
    {"low rate", 8000, -6.0, [](double f) { return slope(f) + peak(f, 900, 3, -9); }, 0.05},
    {"high rate", 192000, -6.0, [](double f) { return slope(f) + peak(f, 900, 3, -9); }, 0.05},
    {"flat", 48000, -6.0, [](double) { return -2.5; }, 1e-4},
    {"unity", 48000, 0.0, [](double) { return 0.0; }, 0.0},
    {"silent", 48000, -6.0, [](double f) { return f < 9e3 ? -6.0 : -4000.0; }, 3.0}};

TEST(RefinedFit, WordsFollowTheCurveAndStayWithinTheirBounds) {
    for (const Curve& curve : curves) {
        SCOPED_TRACE(curve.name);
        RefinedFitter fitter;
        const auto fit = fitter.fit({curve.power(), curve.rate, curve.clampDb});
        ASSERT_TRUE(fit);
        double squares = 0.0, points = 0.0;
        double highest = -1e9, inside = -1e9;  // at the output, and behind any section
        for (double hertz = 5.0; hertz < 0.5 * curve.rate; hertz *= 1.01) {
            double level = 0.0;
            for (const auto& [b0, b1, b2, a1, a2] : DecodeBiquads(fit->words)) {
                level += tests::Decibels(
                    std::abs(tests::PolynomialAt(std::vector{b0, b1, b2}, hertz, curve.rate) /
                             tests::PolynomialAt(std::vector{1.0, a1, a2}, hertz, curve.rate)));
                inside = std::max(inside, level);
            }
            highest = std::max(highest, level);
            if (hertz > 50.0 && hertz < std::min(15000.0, 0.45 * curve.rate)) {
                const double wanted = std::clamp(curve.level(hertz), -60.0, 0.0) - curve.clampDb;
                squares += (level - wanted) * (level - wanted);
                points += 1.0;
            }
        }
        EXPECT_LE(std::sqrt(squares / points), curve.rmsDb);
        EXPECT_LE(highest + curve.clampDb, 0.002);
        EXPECT_LE(inside, std::max(highest, 0.0) + 3.5);
        EXPECT_LT(LargestPoleRadius(fit->words), 0.99995);

        DesignCurve noisy = curve.power();
        for (int32_t i = 0; i < designPoints; ++i) {
            noisy[i] *= 1.0 + 1e-13 * std::sin(i);
        }
        EXPECT_EQ(fitter.fit({noisy, curve.rate, curve.clampDb})->words, fit->words);
    }
}

TEST(RefinedFit, GoesOnFromTheLastResultToAMovedCurve) {
    for (const Curve& curve : std::span(curves).first(6)) {
        RefinedFitter fitter;
        const auto first = fitter.fit({curve.power(), curve.rate, curve.clampDb});
        auto fit = first;
        for (const double peakDb : {-0.5, -1.0, -1.0, -1.0}) {
            fit = fitter.goOn(fit.value(), {curve.power(peakDb), curve.rate, curve.clampDb});
        }
        const DesignCurve moved = curve.power(-1.0);
        const WantedCorrection wanted{moved, curve.rate, curve.clampDb};
        const double still = fitter.errorDb(fit->words, wanted);
        EXPECT_LT(still, fitter.errorDb(first->words, wanted)) << curve.name;
        EXPECT_EQ(fitter.fit({curve.power(), curve.rate, curve.clampDb})->words, first->words);
        EXPECT_LT(still, fitter.errorDb(fitter.fit(wanted)->words, wanted) + 0.1) << curve.name;
    }
}

// A sharp filter that no pair within the limits of Q comes close to, and the same levels with its
// poles outside the unit circle.
TEST(RefinedFit, IsThereIfNoStableOneIsCloserAndOnlyForNumbers) {
    RefinedFitter fitter;
    for (const double r : {0.999, 1.0 / 0.999}) {
        const double b = std::max(1.0, r * r);
        const std::vector<Biquad> sharp{{b, -1.782 * b, 0.9801 * b, -1.8 * r, r * r}};
        ComplexVector spectrum = CascadeSpectrum(sharp, designPoints);
        DesignCurve power{};
        for (int32_t i = 0; i < designPoints; ++i) {
            power[i] = 0.005 * std::norm(spectrum[i]);
        }
        const auto fit = fitter.fitNoWorse({power, 48000, -23.0}, EncodeBiquads(sharp));
        EXPECT_EQ(fit.has_value(), r > 1.0);
        EXPECT_FALSE(fitter.fit({power, 999, -23.0}));
        power[1000] = r > 1.0 ? std::nan("") : HUGE_VAL;
        EXPECT_FALSE(fitter.fit({power, 48000, -23.0}));
    }
}

}  // namespace
}  // namespace tonvane
