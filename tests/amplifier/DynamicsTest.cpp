// The words of crossover and dynamics, and the lists of writes that carry them.
#include <cmath>
#include <complex>
#include <numbers>

#include <gmock/gmock.h>

#include "amplifier/FixedPoint.h"
#include "amplifier/RegisterGroups.h"

namespace tonvane {
namespace {

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
        EXPECT_LT(std::norm(at(high, 0.1 * hz, rate)), 1.1e-4);
        EXPECT_LT(std::norm(at(low, 0.49 * rate, rate)), 1.1e-4);
    }
}

// A one-pole average with the factor f is at 1 - (1 - f)^n after n samples of a step.
TEST(Drc, TimesAreThoseOfAnAverageAtTheSampleRate) {
    for (const int32_t rate : {32000, 96000}) {
        AmplifierSettings settings = settingsAt(rate);
        for (const int32_t ms : {1, 7, 50}) {
            settings.setDrc({0, ms, 1, 1}, 0);
            const double factor = FromCoefWord(settings.coefficients.drc[0].alpha);
            const double reached = 1.0 - std::pow(1.0 - factor, ms * rate / 1000);
            EXPECT_NEAR(reached, 1.0 - 1.0 / std::numbers::e, 3e-4) << rate << " " << ms;
        }
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
    Writes first = {{0x46, {0x20021}}};
    first.insert(first.end(), both.begin() + 1, both.begin() + 4);
    EXPECT_EQ(DrcGroup(settings), first);
}

}  // namespace
}  // namespace tonvane
