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
using Peaks = std::vector<std::pair<int32_t, double>>;  // samples and their values

constexpr int32_t n = 32768;

ResponseAnalyzer analyzed(double rate, const std::vector<double>& impulse) {
    ResponseAnalyzer analyzer;
    analyzer.loadImpulse(rate, n, impulse);
    return analyzer;
}

// Silence but for the peaks.
ResponseAnalyzer analyzed(const Peaks& peaks, double rate = 48000.0) {
    std::vector<double> x(n, 0.0);
    for (const auto& [index, value] : peaks) {
        x[index] = value;
    }
    return analyzed(rate, x);
}

// A fourth-order Butterworth high-pass at `corner`, as an analog filter sampled in frequency, with
// its onset near sample 300.
ResponseAnalyzer highPass(double corner, double rate) {
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
    return analyzed(rate, {buffer.time().begin(), buffer.time().end()});
}

class Analyzer : public tests::WithFftTables {};

TEST_F(Analyzer, OnsetIsTheFirstSampleAboveAnEighthOfThePeak) {
    for (const auto& [peaks, delay] : {std::pair{Peaks{{197, 0.126}, {200, 1.0}}, 165},
                                       {{{197, -0.126}, {200, 1.0}}, 165},
                                       {{{197, 0.126}, {200, -1.0}}, 165},
                                       {{{197, 0.125}, {200, 1.0}}, 168},
                                       {{{10, 2.0}, {4000, -3.0}}, -22},
                                       {{{n - 1, 1e-300}}, n - 33},
                                       {{}, n - 32}}) {
        EXPECT_EQ(analyzed(peaks).delaySamples, delay) << peaks.size();
    }
}

// Neither what comes ahead of the onset nor what lies above 2 kHz counts.
TEST_F(Analyzer, PolarityIsThatOfTheFirstSwing) {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const auto later = static_cast<int32_t>(200 + 0.0015 * rate);
        for (const double sign : {1.0, -1.0}) {
            EXPECT_EQ(analyzed({{200, sign}, {later, -1.5 * sign}}, rate).polarity(), sign) << rate;
        }
    }
    EXPECT_EQ(analyzed({{200, -0.1}, {440, 1.0}}).polarity(), 1);
    EXPECT_EQ(analyzed({{200, -1.0}, {201, 0.9}, {202, 0.9}}).polarity(), 1);
    EXPECT_EQ(analyzed(Peaks{}).polarity(), -1);
}

// The search's template falls three times as steeply as a fourth-order high-pass, which is read up
// to 8 % high; one bin is the resolution. Beyond its range the bounds are found.
TEST_F(Analyzer, CutoffIsTheCornerOfAHighPassWithItsScoreOverFortyDecibels) {
    for (const double rate : {44100.0, 96000.0}) {
        for (const double corner : {50.0, 80.0, 150.0, 300.0}) {
            const int32_t found = highPass(corner, rate).cutoffHz();
            EXPECT_NEAR(found, 1.03 * corner, 0.05 * corner + rate / n) << rate;
        }
    }
    for (const auto& [corner, expected] : {std::pair{5.0, 39}, {1000.0, 398}}) {
        const ResponseAnalyzer analyzer = highPass(corner, 48000);
        EXPECT_EQ(analyzer.cutoffHz(), expected);
        const auto curve = analyzer.cutoffCurve();
        const auto [lowest, highest] = std::ranges::minmax(curve.subspan(13, 260));  // to 400 Hz
        EXPECT_NEAR(lowest, 0.01, 1e-12);
        EXPECT_EQ(highest, 1.0);
        EXPECT_EQ(curve[12] + curve[273], 0.0);
    }
}

TEST_F(Analyzer, PhaseIsThatOfTheResponseWithoutItsDelay) {
    for (const int32_t delay : {0, 300, 20000}) {
        EXPECT_THAT(analyzed({{delay, 0.3}}).phaseDegrees(), Each(testing::DoubleNear(0, 1e-6)));
    }
    EXPECT_THAT(analyzed(Peaks{}).phaseDegrees(), Each(0.0));
    std::vector<double> x(n, 0.0);  // one pole at 0.9, turned over
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

TEST_F(Analyzer, RangeHoldsZeroAndNonsenseRatesGiveFigures) {
    EXPECT_EQ(analyzed(48000, std::vector<double>(n, 0.5)).timeMin, 0.0);
    EXPECT_EQ(analyzed(48000, std::vector<double>(n, -0.5)).timeMax, 0.0);
    for (const double rate :
         {0.0, -48000.0, 2147483647.0, 1e-300, std::numeric_limits<double>::quiet_NaN()}) {
        const ResponseAnalyzer analyzer = analyzed({{200, 1.0}}, rate);
        EXPECT_EQ(analyzer.delaySamples, 168) << rate;
        EXPECT_EQ(analyzer.cutoffHz(), 47) << rate;
        EXPECT_EQ(std::abs(analyzer.polarity()), 1) << rate;
    }
}

// Also those of a second design.
TEST_F(Analyzer, PredictionsAreTheResponseTimesTheFilterWithoutItsLevelDrop) {
    ResponseAnalyzer analyzer = analyzed({{5, 2.0}});
    const std::vector<double> b = {1.0, -0.4, 0.3};
    for (const std::vector<double>& a : {std::vector{1.0, -1.6, 0.8}, {1.0, -1.0}}) {
        analyzer.predictFir(a, -6.0);
        analyzer.predictIir(b, a, -6.0);
        for (const int32_t k : {7, 1000, 16384}) {
            const auto at = [k](const auto& p) { return tests::PolynomialAt(p, k, n); };
            const Complex x =
                at(std::vector{0.0, 0.0, 0.0, 0.0, 0.0, 2.0 * std::pow(10.0, 6.0 / 20.0)});
            EXPECT_LT(std::abs(analyzer.firPrediction()[k] - x * at(a)), 1e-11) << k;
            EXPECT_LT(std::abs(analyzer.iirPrediction()[k] / (x * at(b) / at(a)) - 1.0), 1e-9) << k;
        }
    }
    EXPECT_TRUE(std::isnan(analyzer.iirPrediction()[0].real())) << "a pole on bin 0";
}

}  // namespace
}  // namespace tonvane
