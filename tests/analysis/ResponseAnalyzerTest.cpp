// What the analyzer reads from responses whose figures are known beforehand.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/ResponseAnalyzer.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::Each;
using Complex = std::complex<double>;

constexpr int32_t n = 32768;

std::vector<double> withSamples(std::initializer_list<std::pair<int32_t, double>> samples) {
    std::vector<double> x(n, 0.0);
    for (const auto& [index, value] : samples) {
        x[index] = value;
    }
    return x;
}

// A fourth-order Butterworth high-pass at `corner`, as an analog filter sampled in frequency, with
// its onset near sample 300.
std::vector<double> butterworthHighPass(double corner, double rate) {
    SpectrumBuffer buffer;
    buffer.resize(n);
    for (int32_t k = 0; k < buffer.bins; ++k) {
        const Complex s(0.0, k * rate / n / corner);
        const Complex denominator = (s * s + 2 * std::sin(std::numbers::pi / 8) * s + 1.0) *
                                    (s * s + 2 * std::cos(std::numbers::pi / 8) * s + 1.0);
        buffer.spectrum[k] =
            s * s * s * s / denominator * std::polar(1.0 / n, -2 * std::numbers::pi * 300 * k / n);
    }
    buffer.inverse();
    return {buffer.time().begin(), buffer.time().end()};
}

ResponseAnalyzer analyzed(double rate, const std::vector<double>& impulse) {
    ResponseAnalyzer analyzer;
    analyzer.loadImpulse(rate, n, impulse);
    return analyzer;
}

class Analyzer : public tests::WithFftTables {};

TEST_F(Analyzer, OnsetIsTheFirstSampleAboveAnEighthOfThePeak) {
    const auto delayOf = [](std::initializer_list<std::pair<int32_t, double>> samples) {
        return analyzed(48000, withSamples(samples)).delaySamples;
    };
    EXPECT_EQ(delayOf({{197, 0.126}, {200, 1.0}}), 165);
    EXPECT_EQ(delayOf({{197, -0.126}, {200, 1.0}}), 165);
    EXPECT_EQ(delayOf({{197, 0.126}, {200, -1.0}}), 165);
    EXPECT_EQ(delayOf({{197, 0.125}, {200, 1.0}}), 168);
    EXPECT_EQ(delayOf({{10, 2.0}, {4000, -3.0}}), -22);
    EXPECT_EQ(delayOf({{n - 1, 1e-300}}), n - 33);
}

TEST_F(Analyzer, PolarityIsThatOfTheFirstSwing) {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const auto later = static_cast<int32_t>(200 + 0.0015 * rate);
        EXPECT_EQ(analyzed(rate, withSamples({{200, 1.0}, {later, -1.5}})).polarity(), 1) << rate;
        EXPECT_EQ(analyzed(rate, withSamples({{200, -1.0}, {later, 1.5}})).polarity(), -1) << rate;
    }
    // Neither what comes ahead of the onset nor what lies above 2 kHz counts.
    EXPECT_EQ(analyzed(48000, withSamples({{200, -0.1}, {440, 1.0}})).polarity(), 1);
    EXPECT_EQ(analyzed(48000, withSamples({{200, -1.0}, {201, 0.9}, {202, 0.9}})).polarity(), 1);
}

// The search's template falls three times as steeply as a fourth-order high-pass, which is read up
// to 8 % high; one bin is the resolution.
TEST_F(Analyzer, CutoffIsTheCornerOfAHighPass) {
    for (const double rate : {44100.0, 96000.0}) {
        for (const double corner : {50.0, 80.0, 150.0, 300.0}) {
            const int32_t found = analyzed(rate, butterworthHighPass(corner, rate)).cutoffHz();
            EXPECT_NEAR(found, 1.03 * corner, 0.05 * corner + rate / n) << rate;
        }
    }
}

TEST_F(Analyzer, CutoffStaysBetweenItsBoundsWithItsScoreOverFortyDecibels) {
    for (const auto& [corner, expected] : {std::pair{5.0, 39}, {1000.0, 398}}) {
        const ResponseAnalyzer analyzer = analyzed(48000, butterworthHighPass(corner, 48000));
        EXPECT_EQ(analyzer.cutoffHz(), expected);
        const auto scored = analyzer.cutoffCurve().subspan(13, 260);  // 20 to 400 Hz
        EXPECT_NEAR(*std::ranges::min_element(scored), 0.01, 1e-12);
        EXPECT_EQ(*std::ranges::max_element(scored), 1.0);
        EXPECT_EQ(analyzer.cutoffCurve()[12] + analyzer.cutoffCurve()[273], 0.0);
    }
}

TEST_F(Analyzer, PhaseIsThatOfTheResponseWithoutItsDelay) {
    for (const int32_t delay : {0, 300, 20000}) {
        const ResponseAnalyzer pure = analyzed(48000, withSamples({{delay, 0.3}}));
        EXPECT_THAT(pure.phaseDegrees(), Each(testing::DoubleNear(0, 1e-6)));
    }
    // One pole at 0.9, turned over.
    std::vector<double> x(n, 0.0);
    for (int32_t i = 0; i < 1000; ++i) {
        x[300 + i] = -std::pow(0.9, i);
    }
    const ResponseAnalyzer lowPass = analyzed(48000, x);
    for (const int32_t k : {100, 683, 4096, 15000}) {
        const Complex response = -1.0 / tests::PolynomialAt(std::vector{1.0, -0.9}, k, n);
        const double degrees = std::arg(response) * 180.0 / std::numbers::pi;
        EXPECT_NEAR(lowPass.phaseDegrees()[k], degrees, 0.05) << k;
    }
}

TEST_F(Analyzer, RangeHoldsZeroAndSilenceGivesFigures) {
    EXPECT_EQ(analyzed(48000, std::vector<double>(n, 0.5)).timeMin, 0.0);
    EXPECT_EQ(analyzed(48000, std::vector<double>(n, -0.5)).timeMax, 0.0);
    const ResponseAnalyzer silent = analyzed(48000, withSamples({}));
    EXPECT_EQ(silent.delaySamples, n - 32);
    EXPECT_EQ(silent.polarity(), -1);
    EXPECT_THAT(silent.phaseDegrees(), Each(0.0));
}

TEST_F(Analyzer, NonsenseRatesLeaveTheFiguresWithoutARate) {
    for (const double rate :
         {0.0, -48000.0, 1.0, 2147483647.0, 1e-300, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        const ResponseAnalyzer analyzer = analyzed(rate, withSamples({{200, 1.0}}));
        EXPECT_EQ(analyzer.delaySamples, 168) << rate;
        EXPECT_EQ(analyzer.cutoffHz(), 47) << rate;
    }
}

TEST_F(Analyzer, MagnitudesLeaveTheFiguresAsResetDid) {
    ResponseAnalyzer analyzer = analyzed(48000, withSamples({{200, -1.0}}));
    analyzer.reset();
    std::vector<double> magnitudes(n / 2 + 1, 1.0);
    magnitudes[8192] = 3.0;  // the last bin of the lower half, which is looked at
    magnitudes[8193] = 4.0;
    analyzer.loadMagnitudes(44100, n, magnitudes);
    EXPECT_EQ(analyzer.polarity(), 0);
    EXPECT_EQ(analyzer.delaySamples, 0);
    EXPECT_EQ(analyzer.cutoffHz(), 80);
    EXPECT_EQ(analyzer.timeMax, 3.0);
}

TEST_F(Analyzer, PredictionsAreTheResponseTimesTheFilterWithoutItsLevelDrop) {
    ResponseAnalyzer analyzer = analyzed(48000, withSamples({{5, 2.0}}));
    const std::vector<double> taps = tests::Noise(256);
    const std::vector<double> b = {1.0, -0.4, 0.3};
    const std::vector<double> a = {1.0, -1.6, 0.8};
    analyzer.predictFir(taps, -6.0);
    analyzer.predictIir(b, a, -6.0);
    for (const int32_t k : {0, 7, 1000, 16384}) {
        const auto at = [k](const std::vector<double>& p) { return tests::PolynomialAt(p, k, n); };
        const Complex x = at({0, 0, 0, 0, 0, 2.0 * std::pow(10.0, 6.0 / 20.0)});
        EXPECT_LT(std::abs(analyzer.firPrediction()[k] - x * at(taps)), 1e-11) << k;
        EXPECT_LT(std::abs(analyzer.iirPrediction()[k] - x * at(b) / at(a)), 1e-11) << k;
    }

    analyzer.predictIir(b, std::vector{1.0, -1.0}, 0.0);  // a pole on bin 0
    EXPECT_TRUE(std::isnan(analyzer.iirPrediction()[0].real()));
}

}  // namespace
}  // namespace tonvane
