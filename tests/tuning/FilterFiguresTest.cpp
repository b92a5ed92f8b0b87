#include <cmath>
#include <numbers>

#include <gmock/gmock.h>

#include "amplifier/FixedPoint.h"
#include "tuning/FilterFigures.h"

namespace tonvane {
namespace {

// A pair of poles at radius r and angle t alone: its magnitude is highest where
// cos w = (1 + r^2)/(2 r) cos t, with 1/((1 - r^2) sin t).
TEST(FilterFigures, FindTheNarrowPeakOfAPolePair) {
    constexpr double rate = 48000.0;
    for (const auto& [hertz, radius] :
         {std::pair{90.0, 0.9998}, {1000.0, 0.999}, {17000.0, 0.98}}) {
        const double angle = 2.0 * std::numbers::pi * hertz / rate;
        const std::vector<int32_t> words{0x20000, 0, 0, ToCoefWord(2.0 * radius * std::cos(angle)),
                                         ToCoefWord(-radius * radius)};
        const double r = std::sqrt(-FromCoefWord(words[4]));
        const double cosine = FromCoefWord(words[3]) / (2.0 * r);
        const double peak = std::acos((1.0 + r * r) / (2.0 * r) * cosine);
        const double gain =
            0x20000 / 8388608.0 / ((1.0 - r * r) * std::sqrt(1.0 - cosine * cosine));
        const HighestGain found = HighestGainOf(words, 48000);
        EXPECT_NEAR(found.db, 20.0 * std::log10(gain), 0.05);
        EXPECT_NEAR(found.hertz, peak * rate / (2.0 * std::numbers::pi), 0.75);

        // Behind it a section that takes the poles away: the peak is inside, and neither rounding
        // is filtered in the end.
        const double a1 = -FromCoefWord(words[3]);
        const double a2 = -FromCoefWord(words[4]);
        std::vector<int32_t> chain = words;
        for (const double value : {1.0, a1, a2, 0.0, 0.0}) {
            chain.push_back(ToCoefWord(value));
        }
        const ChainFigures figures = ChainFiguresOf(chain, 48000);
        EXPECT_NEAR(figures.insideDb, 20.0 * std::log10(gain * 64.0), 0.05);
        EXPECT_EQ(figures.insideSection, 1);
        EXPECT_EQ(figures.insideHertz, found.hertz);
        EXPECT_NEAR(figures.noiseDb, 10.0 * std::log10(2.0), 1e-6);
        EXPECT_NEAR(figures.largestQ,
                    std::sqrt((1.0 + a2 + a1) * (1.0 + a2 - a1)) / (2.0 - 2.0 * a2), 1e-9);
        // The mean power of 1/A over the circle.
        EXPECT_NEAR(
            ChainFiguresOf(words, 48000).noiseDb,
            10.0 * std::log10((1.0 + a2) / ((1.0 - a2) * ((1.0 + a2) * (1.0 + a2) - a1 * a1))),
            0.01);
    }
    // Unstable.
    EXPECT_TRUE(
        std::isinf(ChainFiguresOf(std::vector{0x800000, 0, 0, 0, 0x800001}, 48000).noiseDb));
}

}  // namespace
}  // namespace tonvane
