// The excitations' level, band and course, and the way back from a capture to a response.
#include <cmath>
#include <numbers>
#include <numeric>

#include <gtest/gtest.h>

#include "signal/PeriodShift.h"
#include "signal/PinkNoise.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using Complex = std::complex<double>;

template <typename Signal>
std::unique_ptr<Signal> generated(int32_t rate, int order = 15) {
    auto signal = std::make_unique<Signal>();
    signal->sampleRate = rate;
    signal->highFrequency = rate / 2;
    signal->setOrder(order);
    signal->generate();
    return signal;
}

double rms(std::span<const double> x) {
    const double power = std::inner_product(x.begin(), x.end(), x.begin(), 0.0);
    return std::sqrt(power / static_cast<double>(x.size()));
}

double peak(std::span<const double> x) {
    return std::fabs(*std::ranges::max_element(x, {}, [](double s) { return std::fabs(s); }));
}

class TestSignal : public tests::WithFftTables {};

TEST_F(TestSignal, NoiseHasItsLevelBandAndSlopeAndIsAlwaysTheSame) {
    for (const auto& [rate, order] : std::initializer_list<std::pair<int32_t, int>>{
             {44100, 15}, {48000, 15}, {96000, 15}, {192000, 15}, {48000, 12}}) {
        const auto noise = generated<CPinkNoise>(rate, order);
        const std::vector<double> first(noise->samples().begin(), noise->samples().end());
        EXPECT_TRUE(std::ranges::equal(noise->generate(), first));
        // Counting the top bin twice like all others takes 2e-5 at the most.
        EXPECT_NEAR(rms(first) * 4.5, 1.0, 2e-5);

        const ComplexVector& bins = noise->spectrum();
        const double binsPerHertz = static_cast<double>(noise->length) / rate;
        const double lowest = order < 15 ? 40.0 : 20.0;
        for (int32_t k = 0; k <= noise->length / 2; ++k) {
            ASSERT_EQ(bins[k] != 0.0, k / binsPerHertz >= lowest) << rate << " Hz, bin " << k;
        }
        const auto dB = [&](double hertz) {
            return tests::Decibels(std::abs(bins[std::lround(hertz * binsPerHertz)]));
        };
        EXPECT_NEAR(dB(5000) - dB(20000), 6.02, 0.15);
        EXPECT_NEAR(dB(45) - dB(80), 0.0, 1.5);
    }
}

TEST_F(TestSignal, ChirpSweepsFromZeroToTheTopBetweenQuietEnds) {
    const auto chirp = generated<CChirpSignal>(48000);
    for (const Complex bin : chirp->spectrum()) {
        ASSERT_NEAR(std::abs(bin) / chirp->binMagnitude, 1.0, 1e-12);
    }
    // From 12 % to 88 % of the period at a constant amplitude of sqrt(1/2).
    const std::span<const double> x = chirp->samples();
    EXPECT_LT(peak(x.first(3277)), 0.05);
    EXPECT_LT(peak(x.last(3277)), 0.05);
    for (const double share : {0.25, 0.5, 0.75}) {
        const auto middle = static_cast<size_t>((0.12 + 0.76 * share) * 32768);
        EXPECT_NEAR(rms(x.subspan(middle - 500, 1001)), 0.5, 0.02) << share;
    }
}

// A capture that went through 0.5*x[t] - 0.25*x[t-7] + 0.125*x[t+3], around the period.
void expectLoopComesBack(CTestSignal& signal, double lowest, double highest) {
    const std::span<const double> x = signal.samples();
    const int32_t n = signal.length;
    std::vector<double> captured(x.size());
    for (int32_t t = 0; t < n; ++t) {
        captured[t] = 0.5 * x[t] - 0.25 * x[(t + n - 7) % n] + 0.125 * x[(t + 3) % n];
    }
    SpectrumBuffer response;
    response.resize(n);
    response.setSamplesPadded(signal.deconvolve(captured));
    response.forward();
    for (int32_t k = 0; k <= n / 2; ++k) {
        const double hertz = static_cast<double>(k) * signal.sampleRate / n;
        const double angle = 2.0 * std::numbers::pi * k / n;
        const Complex loop = 0.5 - std::polar(0.25, -7.0 * angle) + std::polar(0.125, 3.0 * angle);
        const Complex expected = hertz >= lowest && hertz <= highest ? loop : 0.0;
        ASSERT_LT(std::abs(response.spectrum[k] - expected), 1e-9) << hertz;
    }
}

TEST_F(TestSignal, DeconvolutionGivesTheLoopWithinTheBand) {
    for (const int32_t rate : {11025, 44100, 44101, 96000}) {  // the noise has no half a hertz
        expectLoopComesBack(*generated<CPinkNoise>(rate), 20.0, rate / 2);
        expectLoopComesBack(*generated<CChirpSignal>(rate), 0.0, rate / 2.0);
    }
    expectLoopComesBack(*generated<CPinkNoise>(38), 20.0, 19.0);  // no band at all
    expectLoopComesBack(*generated<CPinkNoise>(48000, 12), 40.0, 24000.0);
    // The product of rate and bin wraps in 32 bits.
    expectLoopComesBack(*generated<CPinkNoise>(192000), 20.0, 65535.9);
}

// Four periods between two halves of silence, through an echo and with noise beside, and so many
// frames lost, or repeated below 0, from one on.
std::vector<double> capturedPeriods(std::span<const double> x, int32_t at, int32_t lost,
                                    double echo = 0.5, double noise = 0.0) {
    constexpr int32_t n = 32768;
    const auto played = [&](int32_t t) {
        return t < n / 2 || t >= 9 * n / 2 ? 0.0 : x[static_cast<size_t>((t + n / 2) % n)];
    };
    std::vector<double> captured = tests::Noise(5 * n);
    for (int32_t i = 0; i < 5 * n; ++i) {
        const int32_t t = i < at ? i : i + lost;
        captured[i] = played(t) + echo * played(t - 2100) + noise * captured[i];
    }
    return captured;
}

TEST_F(TestSignal, AShiftAnywhereInTheCapturedPeriodsIsFoundAndNothingElseIsOne) {
    const auto signal = generated<CPinkNoise>(48000);
    const std::span<const double> x = signal->samples();
    const auto shiftOf = [](const auto& captured) { return FindPeriodShift(captured, 32768); };
    for (int32_t at = 16384 + 4096; at < 147456 - 2048; at += 7001) {
        EXPECT_EQ(shiftOf(capturedPeriods(x, at, 1024)), 1024) << at;
    }
    for (const int32_t lost : {64, 8192, 16000, -256}) {
        EXPECT_EQ(shiftOf(capturedPeriods(x, 70000, lost, 0.5, 0.05)), std::abs(lost));
    }
    for (const double echo : {0.0, 0.2, 0.3, 1.0, 3.0, 5.0, -2.0}) {
        EXPECT_EQ(shiftOf(capturedPeriods(x, 70000, 8, echo, 0.05)), 0) << echo;
    }
    EXPECT_EQ(shiftOf(std::vector<double>(5 * size_t{32768})) + shiftOf(tests::Noise(163840)), 0);
}

}  // namespace
}  // namespace tonvane
