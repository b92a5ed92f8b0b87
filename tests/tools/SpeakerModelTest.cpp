// The parts of the example speaker against the textbook's figures.
#include <cmath>

#include <gmock/gmock.h>

#include "example-speaker/Room.h"
#include "example-speaker/SpeakerModel.h"

namespace tonvane::example {
namespace {

double decibels(std::complex<double> pressure) {
    return 20.0 * std::log10(std::abs(pressure));
}

// The maximally flat alignment: magnitude squared 1/(1 + (fs/f)^8). Its parameters are
// Qts = 1/sqrt(4 + sqrt 8) and Vas/Vb = sqrt 2 without losses, and in Small's table for QL = 7
// Qts = 0.405 and Vas/Vb = 1.061; the box is tuned to fs in both.
TEST(BoxAlignment, GivesTheButterworthAlignmentOfTheTables) {
    const VentedBox lossless{.volume = 1.0, .tuning = 50.0, .leakQuality = 1e12, .baffleWidth = 1};
    const Driver forLossless{50.0, 1.0 / std::sqrt(4.0 + std::sqrt(8.0)), std::sqrt(2.0), 1, 1};
    const VentedBox leaking{.volume = 1.0, .tuning = 50.0, .leakQuality = 7.0, .baffleWidth = 1};
    const Driver forLeaking{50.0, 0.405, 1.061, 1, 1};
    for (const double f : {20.0, 40.0, 50.0, 60.0, 200.0}) {
        const double expected = -10.0 * std::log10(1.0 + std::pow(50.0 / f, 8.0));
        EXPECT_NEAR(decibels(BoxAlignment(forLossless, lossless).at(f)), expected, 1e-9) << f;
        EXPECT_NEAR(decibels(BoxAlignment(forLeaking, leaking).at(f)), expected, 0.02) << f;
    }
}

// What a resonance adds to the direct sound falls to half its power at the two frequencies that
// are hertz/quality apart and whose product is hertz squared.
TEST(SpeakerSections, ResonanceHasItsHeightAndItsWidth) {
    for (const double height : {5.0, -4.0}) {
        const AnalogSection section = Resonance(5000.0, 4.0, height);
        EXPECT_NEAR(decibels(section.at(5000.0)), height, 1e-12);
        EXPECT_NEAR(std::arg(section.at(5000.0)), 0.0, 1e-12);
        const double middle = 5000.0 * std::sqrt(1.0 + 1.0 / 64.0);
        const double summit = std::norm(section.at(5000.0) - 1.0);
        EXPECT_NEAR(std::norm(section.at(middle - 625.0) - 1.0), 0.5 * summit, 1e-12);
        EXPECT_NEAR(std::norm(section.at(middle + 625.0) - 1.0), 0.5 * summit, 1e-12);
        EXPECT_NEAR(decibels(section.at(50.0)), 0.0, 0.01);
    }
}

// A microphone at 4 m and a surface 1.5 m beside make a way of 5 m: one metre longer.
TEST(Room, ReflectionCancelsAtHalfAWaveAndAddsAtAWhole) {
    const Room room{.microphone = {4.0, 0.0, 0.0},
                    .surfaces = {{.axis = 1, .position = -1.5, .reflection = 0.5, .corner = 1e9}}};
    const auto level = [&](double f) {
        return std::abs(DirectSound(room, f) + Reflections(room, f));
    };
    EXPECT_NEAR(level(speedOfSound / 2.0), 1.0 / 4.0 - 0.5 / 5.0, 1e-6);
    EXPECT_NEAR(level(speedOfSound), 1.0 / 4.0 + 0.5 / 5.0, 1e-6);
    const double early = std::arg(DirectSound(room, 10.0));
    EXPECT_NEAR(early, -2.0 * M_PI * 10.0 * 4.0 / 343.0, 1e-12);
}

}  // namespace
}  // namespace tonvane::example
