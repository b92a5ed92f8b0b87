// The words that go to the amplifier, of sections, crossover and dynamics, and the lists of writes
// that carry them.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/BiquadWords.h"
#include "amplifier/FixedPoint.h"
#include "amplifier/RegisterGroups.h"

namespace tonvane {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double step = 1.0 / (1 << 23);

std::vector<int32_t> wordsOf(int32_t (&convert)(double), std::vector<double> values) {
    std::vector<int32_t> words(values.size());
    std::ranges::transform(values, words.begin(), convert);
    return words;
}

TEST(Words, CoefficientsRoundToTheNearestStepAndWrap) {
    EXPECT_THAT(wordsOf(ToCoefWord, {0.0, 1.0, -1.0, -0.5, 4.0 - step, -4.0}),
                ElementsAre(0, 0x800000, 0x3800000, 0x3C00000, 0x1FFFFFF, 0x2000000));
    // Ties go away from zero.
    EXPECT_THAT(wordsOf(ToCoefWord, {0.5 * step, -0.5 * step, 1.5 * step, 99.49 * step}),
                ElementsAre(1, 0x3FFFFFF, 2, 99));
    // Beyond the range the high bits are lost, however far.
    EXPECT_THAT(wordsOf(ToCoefWord, {4.0, 5.5, -5.5, 1e9 + 0.5, -1e9 - 0.5, 0x1p45 + 1.0, 1e300}),
                ElementsAre(0x2000000, 0x2C00000, 0x1400000, 0x400000, 0x3C00000, 0x800000, 0));
    EXPECT_THAT(wordsOf(ToCoefWord, {-1e300, infinity, -infinity, nan}), Each(0));
}

TEST(Words, ThresholdsHaveTwentySevenFractionBits) {
    EXPECT_THAT(wordsOf(ToThresholdWord, {1.0, 4.0 - 0x1p-27, 0x1p-28, 4.0, 5.0, -1.0, 1e300, nan}),
                ElementsAre(0x8000000, 0x1FFFFFFF, 1, 0, 0x8000000, 0x18000000, 0, 0));
}

TEST(Words, DecodingIsTheReturnOfEncoding) {
    for (int32_t word = 0; word <= coefficientMask; word += 4093) {
        ASSERT_EQ(ToCoefWord(FromCoefWord(word)), word);
    }
    EXPECT_EQ(FromCoefWord(0x2000000), -4.0);
    EXPECT_EQ(FromCoefWord(0x1FFFFFF), 4.0 - step);
    EXPECT_EQ(FromCoefWord(-1), -step);  // bits above the 26 are not looked at
    EXPECT_THAT((std::vector{0.0, -4.0, -4.0 - 0.25 * step, 4.0 - step, 4.0 - 0.75 * step}),
                Each(testing::ResultOf(FitsCoefWord, true)));
    EXPECT_THAT(
        (std::vector{4.0, 4.0 - 0.5 * step, -4.0 - 0.5 * step, 1e300, infinity, -infinity, nan}),
        Each(testing::ResultOf(FitsCoefWord, false)));
}

TEST(Words, SectionsHaveTheFeedbackNegatedAndComeBackFromTheirWords) {
    const Biquad sections[] = {{2.0, -0.5, 0.25, -1.5, 0.75}, {1.0, nan, -2.0, 0.5, 0.0}, {}};
    std::vector<int32_t> words = EncodeBiquads(sections);
    EXPECT_THAT(words, ElementsAre(0x1000000, 0x3C00000, 0x200000, 0xC00000, 0x3A00000,  //
                                   0x800000, 0, 0x3000000, 0x3C00000, 0,                 //
                                   0x800000, 0, 0, 0, 0));
    words.push_back(7);  // of no whole section
    const std::vector<Biquad> decoded = DecodeBiquads(words);
    ASSERT_EQ(decoded.size(), 3U);
    EXPECT_EQ(EncodeBiquads(std::span(decoded).first(1)), EncodeBiquads(std::span(sections, 1)));
    EXPECT_FALSE(std::signbit(decoded[2].a1));
}

using Writes = std::vector<RegisterWrite>;

AmplifierSettings settingsAt(int32_t sampleRate) {
    AmplifierSettings settings;
    settings.reset(sampleRate);
    return settings;
}

// The response of a section, read back from its words.
std::complex<double> at(const BiquadWords& words, double hertz, double sampleRate) {
    const auto z = std::polar(1.0, -2.0 * std::numbers::pi * hertz / sampleRate);
    const auto value = [&](int32_t i) { return FromCoefWord(words[i]); };
    return (value(0) + value(1) * z + value(2) * z * z) / (1.0 - value(3) * z - value(4) * z * z);
}

// Two second-order Butterworth sections in cascade are a fourth-order Linkwitz-Riley band: both
// bands 6.02 dB down at the edge, and their sum an all-pass.
TEST(Crossover, BandsMeetAtTheEdgeAndSumToAnAllPass) {
    for (const auto& [rate, hz] : {std::pair{48000, 300}, {44100, 2500}, {96000, 8000}}) {
        AmplifierSettings settings = settingsAt(rate);
        settings.setCrossover(hz);
        const auto& low = settings.coefficients.lowBand;
        const auto& high = settings.coefficients.highBand;
        for (const double hertz : {0.1 * hz, 0.7 * hz, 1.0 * hz, 2.0 * hz, 0.45 * rate}) {
            const auto sum = std::pow(at(low, hertz, rate), 2) + std::pow(at(high, hertz, rate), 2);
            EXPECT_NEAR(std::abs(sum), 1.0, 2e-3) << hz << " at " << hertz;
        }
        EXPECT_NEAR(std::norm(at(low, hz, rate)), 0.5, 2e-3) << hz;
        EXPECT_NEAR(std::norm(at(high, hz, rate)), 0.5, 2e-3) << hz;
    }
}

// A one-pole average with the factor f is at 1 - (1 - f)^n after n samples of a step.
TEST(Drc, TimesAreThoseOfAnAverageAtTheSampleRate) {
    for (const auto& [rate, ms] : {std::pair{32000, 7}, {96000, 1}, {96000, 50}}) {
        AmplifierSettings settings = settingsAt(rate);
        settings.setDrc({0, ms, 1, 1}, 0);
        const double factor = FromCoefWord(settings.coefficients.drc[0].alpha);
        const double reached = 1.0 - std::pow(1.0 - factor, ms * rate / 1000);
        EXPECT_NEAR(reached, 1.0 - 1.0 / std::numbers::e, 3e-4) << rate << " " << ms;
    }
}

TEST(Groups, CrossoverSendsTheHighBandToTheFirstPath) {
    AmplifierSettings settings = settingsAt(48000);
    settings.splitEnabled = true;
    const BiquadWords high{0x7C7E9D, 0x30702C7, 0x7C7E9D, 0xF8E4A5, 0x386EA32};
    const BiquadWords low{0xC4A, 0x1895, 0xC4A, 0xF8E4A5, 0x386EA32};
    const Writes split = {{0x58, high}, {0x59, high}, {0x70, {0x800000}},
                          {0x5A, low},  {0x5B, low},  {0x71, {0x800000}}};
    EXPECT_EQ(CrossoverGroup(settings), split);
    EXPECT_EQ(StartValues({})[7], (RegisterWrite{0x57, {0x20000}}));
}

TEST(Groups, DrcSendsTheBitsAndThenTheRegistersOfThoseThatAreOn) {
    AmplifierSettings settings = settingsAt(48000);
    settings.drcEnabled = {true, true};
    settings.setDrc({12, 5000, 1000, 5000}, 1);
    const Writes both = {{0x46, {0x20023}},
                         {0x3B, {0x2A39B, 0x7D5C65}},
                         {0x3C, {0xAF, -0xAF}},
                         {0x40, {0x40C371, 0x40C370}},
                         {0x3E, {0x23, 0x800000 - 0x23}},
                         {0x3F, {0xAF, -0x23}},
                         {0x43, {0x1FD93C1F, 0x1FD93C1E}}};
    EXPECT_EQ(DrcGroup(settings), both);
    settings.drcEnabled = {true, false};
    EXPECT_EQ(DrcGroup(settings), (Writes{{0x46, {0x20021}}, both[1], both[2], both[3]}));
}

}  // namespace
}  // namespace tonvane
