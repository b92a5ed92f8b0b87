// The excitations' level, band and course, and the way back from a capture to a response.
#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "signal/PinkNoise.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using Complex = std::complex<double>;

struct Setup {
    int32_t rate;
    int order;
};

template <typename Signal>
std::unique_ptr<Signal> generated(Setup setup) {
    auto signal = std::make_unique<Signal>();
    signal->sampleRate = setup.rate;
    signal->highFrequency = setup.rate / 2;
    signal->setOrder(setup.order);
    signal->generate();
    return signal;
}

double rms(std::span<const double> x) {
    double sum = 0.0;
    for (const double sample : x) {
        sum += sample * sample;
    }
    return std::sqrt(sum / static_cast<double>(x.size()));
}

double peak(std::span<const double> x) {
    const auto [low, high] = std::ranges::minmax_element(x);
    return std::max(-*low, *high);
}

class Noise : public tests::WithFftTables, public testing::WithParamInterface<Setup> {};

TEST_P(Noise, HasItsLevelBandAndSlope) {
    const auto noise = generated<CPinkNoise>(GetParam());
    const ComplexVector& bins = noise->spectrum();
    // Counting the top bin twice like all others takes 2e-5 at the most.
    EXPECT_NEAR(rms(noise->samples()) * 4.5, 1.0, 2e-5);
    EXPECT_LT(peak(noise->samples()), 1.0);

    const auto [rate, order] = GetParam();
    const int32_t n = 1 << order;
    for (int32_t k = 0; k <= n / 2; ++k) {
        const double hertz = static_cast<double>(k) * rate / n;
        ASSERT_EQ(bins[k] != 0.0, hertz >= (order < 15 ? 40.0 : 20.0)) << hertz;
    }
    EXPECT_LT(std::fabs(bins[n / 2].imag()), 1e-12 * std::fabs(bins[n / 2].real()));
    const auto dB = [&, rate = rate](double hertz) {
        return tests::Decibels(std::abs(bins[std::lround(hertz * n / rate)]));
    };
    EXPECT_NEAR(dB(5000) - dB(20000), 6.02, 0.15);
    EXPECT_NEAR(dB(45) - dB(80), 0.0, 1.5);
}

TEST_P(Noise, IsTheSameAtEveryGenerationAndInEveryObject) {
    const auto noise = generated<CPinkNoise>(GetParam());
    const std::vector<double> first(noise->samples().begin(), noise->samples().end());
    EXPECT_TRUE(std::ranges::equal(noise->generate(), first));
    EXPECT_TRUE(std::ranges::equal(generated<CPinkNoise>(GetParam())->samples(), first));
}

INSTANTIATE_TEST_SUITE_P(Rates, Noise,
                         testing::Values(Setup{44100, 15}, Setup{48000, 15}, Setup{96000, 15},
                                         Setup{192000, 15}, Setup{48000, 12}));

class TestSignal : public tests::WithFftTables {};

TEST_F(TestSignal, ChirpSweepsFromZeroToTheTopBetweenQuietEnds) {
    const auto chirp = generated<CChirpSignal>({48000, 15});
    for (const Complex bin : chirp->spectrum()) {
        ASSERT_NEAR(std::abs(bin) / chirp->binMagnitude, 1.0, 1e-12);
    }
    // From 12 % to 88 % of the period at a constant amplitude of sqrt(1/2).
    const std::span<const double> x = chirp->samples();
    EXPECT_LT(peak(x.first(3277)), 0.05);
    EXPECT_LT(peak(x.last(3277)), 0.05);
    for (const double share : {0.25, 0.5, 0.75}) {
        const auto at = static_cast<size_t>((0.12 + 0.76 * share) * 32768);
        const std::span<const double> around = x.subspan(at - 500, 1001);
        EXPECT_NEAR(rms(around), 0.5, 0.02) << share;
        int crossings = 0;
        for (size_t i = 1; i < around.size(); ++i) {
            crossings += (around[i] < 0.0) != (around[i - 1] < 0.0) ? 1 : 0;
        }
        EXPECT_NEAR(crossings, 1000 * share, 5) << share;
    }
}

// A capture that went through 0.5*x[t] - 0.25*x[t-7] + 0.125*x[t+3], around the period.
template <typename Signal>
void expectLoopComesBack(Setup setup, double lowest, double highest) {
    const auto signal = generated<Signal>(setup);
    const std::span<const double> x = signal->samples();
    const auto n = static_cast<int32_t>(x.size());
    std::vector<double> captured(x.size());
    for (int32_t t = 0; t < n; ++t) {
        captured[t] = 0.5 * x[t] - 0.25 * x[(t + n - 7) % n] + 0.125 * x[(t + 3) % n];
    }
    SpectrumBuffer response;
    response.resize(n);
    response.setSamplesPadded(signal->deconvolve(captured));
    response.forward();
    for (int32_t k = 0; k <= n / 2; ++k) {
        const double hertz = static_cast<double>(k) * setup.rate / n;
        const double angle = 2.0 * std::numbers::pi * k / n;
        const Complex loop = 0.5 - std::polar(0.25, -7.0 * angle) + std::polar(0.125, 3.0 * angle);
        const Complex expected = hertz >= lowest && hertz <= highest ? loop : 0.0;
        ASSERT_LT(std::abs(response.spectrum[k] - expected), 1e-9) << setup.rate << " bin " << k;
    }
}

TEST_F(TestSignal, DeconvolutionGivesTheLoopWithinTheBand) {
    for (const int32_t rate : {44100, 48000, 96000}) {
        expectLoopComesBack<CPinkNoise>({rate, 15}, 20.0, rate / 2.0);
        expectLoopComesBack<CChirpSignal>({rate, 15}, 0.0, rate / 2.0);
    }
    expectLoopComesBack<CPinkNoise>({48000, 12}, 40.0, 24000.0);
    // The product of rate and bin wraps in 32 bits.
    expectLoopComesBack<CPinkNoise>({192000, 15}, 20.0, 65535.9);
}

}  // namespace
}  // namespace tonvane
