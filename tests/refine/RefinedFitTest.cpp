// Curves of many kinds, and the filters for them, read back from their words.
#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/FixedPoint.h"
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

struct Curve {
    const char* name;
    int32_t rate;
    double clampDb;
    double (*level)(double hertz);  // dB
    double rmsDb;                   // how close the words have to come

    [[nodiscard]] DesignCurve power(double movedDb = 0.0) const {
        DesignCurve result{};
        for (int32_t i = 0; i < designPoints; ++i) {
            const double hertz = std::max(1.0, 1.0 * i * rate / designLength);
            const double moved = level(hertz) + peak(hertz, 700.0, 2.0, -movedDb);
            result[i] = std::pow(10.0, std::min(moved, 0.0) / 10.0);
        }
        return result;
    }
};

double slope(double f) {
    return -3.0 * std::log10(1.0 + f / 20.0);
}
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
    {"silent above", 48000, -6.0, [](double f) { return f < 9e3 ? -6.0 : -500.0; }, 3.0}};

// The level of the first sections of decoded words at a frequency, dB.
double levelOf(std::span<const int32_t> words, double hertz, int32_t rate) {
    std::complex<double> response = 1.0;
    for (const auto& [b0, b1, b2, a1, a2] : DecodeBiquads(words)) {
        response *= tests::PolynomialAt(std::vector{b0, b1, b2}, hertz, rate) /
                    tests::PolynomialAt(std::vector{1.0, a1, a2}, hertz, rate);
    }
    return tests::Decibels(std::abs(response));
}

TEST(RefinedFit, WordsFollowTheCurveAndStayWithinTheirBounds) {
    for (const Curve& curve : curves) {
        SCOPED_TRACE(curve.name);
        RefinedFitter fitter;
        const auto fit = fitter.fit({curve.power(), curve.rate, curve.clampDb});
        ASSERT_TRUE(fit);
        const std::span<const int32_t> words = fit->words;
        ASSERT_EQ(words.size(), 35U);
        double squares = 0.0;
        double points = 0.0;
        std::vector<double> highest(7, -1e9);  // behind each section
        for (double hertz = 5.0; hertz < 0.5 * curve.rate; hertz *= 1.01) {
            for (size_t k = 0; k < 7; ++k) {
                const double level = levelOf(words.first(5 * k + 5), hertz, curve.rate);
                highest[k] = std::max(highest[k], level);
            }
            if (hertz > 50.0 && hertz < std::min(15000.0, 0.45 * curve.rate)) {
                const double wanted = std::max(std::min(curve.level(hertz), 0.0), -60.0);
                const double level = levelOf(words, hertz, curve.rate) + curve.clampDb;
                squares += (level - wanted) * (level - wanted);
                points += 1.0;
            }
        }
        EXPECT_LE(std::sqrt(squares / points), curve.rmsDb);
        EXPECT_LE(highest[6] + curve.clampDb, 0.002);
        EXPECT_LE(*std::ranges::max_element(highest), std::max(highest[6], 0.0) + 3.5);
        EXPECT_LT(LargestPoleRadius(words), 0.99995);

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
        for (const double movedDb : {0.5, 1.0, 1.0, 1.0}) {
            const DesignCurve moved = curve.power(movedDb);
            fit = fitter.goOn(*fit, {moved, curve.rate, curve.clampDb});
            ASSERT_TRUE(fit) << curve.name;
        }
        const DesignCurve moved = curve.power(1.0);
        const WantedCorrection wanted{moved, curve.rate, curve.clampDb};
        const double still = fitter.errorDb(fit->words, wanted);
        EXPECT_LT(still, fitter.errorDb(first->words, wanted)) << curve.name;
        EXPECT_LT(still, fitter.errorDb(fitter.fit(wanted)->words, wanted) + 0.1) << curve.name;
    }
}

TEST(RefinedFit, IsThereIfNoneIsCloserAndOnlyForNumbers) {
    // Its own words turned down by 0.1 dB, a filter that no pair within the limits of Q can be, and
    // the same with its poles turned to the outside of the circle.
    RefinedFitter fitter;
    const DesignCurve power = curves[0].power();
    const WantedCorrection wanted{power, 48000, -6.0};
    auto own = fitter.fit(wanted)->sections;
    own[0].b0 *= 0.988, own[0].b1 *= 0.988, own[0].b2 *= 0.988;
    EXPECT_TRUE(fitter.fitNoWorse(wanted, EncodeBiquads(own)));
    for (const double radius : {0.999, 1.0 / 0.999}) {
        const double pole = radius < 1.0 ? 1.0 : radius * radius;  // the same level
        const Biquad sharp{pole, -1.8 * 0.99 * pole, 0.9801 * pole, -1.8 * radius, radius * radius};
        const std::vector<int32_t> words = EncodeBiquads(std::vector{sharp});
        DesignCurve same{};
        for (int32_t i = 0; i < designPoints; ++i) {
            same[i] =
                std::pow(10.0, (levelOf(words, i * 48000.0 / designLength, 48000) - 22.0) / 10.0);
        }
        const auto fit = fitter.fitNoWorse({same, 48000, -22.0}, words);
        EXPECT_EQ(fit.has_value(), radius > 1.0);
    }
    EXPECT_FALSE(fitter.fit({power, 999, -6.0}));
    for (const double bad : {std::numeric_limits<double>::infinity(), std::nan("")}) {
        DesignCurve holed = power;
        holed[1000] = bad;
        EXPECT_FALSE(fitter.fit({holed, 48000, -6.0}));
    }
}

// Against differences of the cost; part of the levels is above the limit.
TEST(PairModel, GradientIsThatOfTheCost) {
    FitGrid grid = MakeFitGrid(48000, 65);
    PairModel model{2, {-4.0, -1.5, 0.3, -0.5, -3.0, -1.0, -0.2, 0.4, 1.0}};
    ModelCurve curve;
    NormalEquations equations;
    EvaluateModel(model, grid, curve);
    FormNormalEquations(model, curve, grid, equations);
    for (size_t i = 0; i < model.parameters(); ++i) {
        const auto costAt = [&](double step) {
            PairModel moved = model;
            moved.values[i] += step;
            EvaluateModel(moved, grid, curve);
            return CostOf(curve, grid);
        };
        EXPECT_NEAR((costAt(1e-5) - costAt(-1e-5)) / 4e-5 / equations.gradient[i], 1.0, 1e-4) << i;
    }
}

}  // namespace
}  // namespace tonvane
