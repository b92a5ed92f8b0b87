// Ranges, ticks and labels of an axis.
#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "graph/GraphAxis.h"

namespace tonvane {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(AxisLabel, IsInEngineeringNotation) {
    const struct {
        int32_t style;
        double value;
        const char* label;
    } cases[] = {
        {0, 0.0, "0 "},       {0, 999.0, "999 "},   {0, -12.0, "-12 "},    {0, -12.5, "-12 "},
        {0, 1.5e6, "2M"},     {0, 9e-16, "0 "},     {0, 1e15, "1000T"},    {0, 999.9, "1000 "},
        {1, 0.5, "0.50 "},    {1, 5.0, "5.00 "},    {1, 50.0, "50.0 "},    {1, 500.0, "0.50k"},
        {1, -0.25, "-0.25 "}, {1, 1000.0, "1.00k"}, {1, 20000.0, "20.0k"}, {1, 0.05, "50.0m"},
        {1, 1e-15, "1.00f"},  {1, 2e14, "200.0T"},  {1, 0.0, "0 "},
    };
    CGraphAxis axis;
    for (const auto& c : cases) {
        axis.labelStyle = c.style;
        EXPECT_EQ(axis.FormatLabel(c.value), c.label) << c.value << " in style " << c.style;
    }
    // Each power of ten is in its own decade, whatever its logarithm rounds to.
    axis.labelStyle = 0;
    for (int32_t e = -15; e < 15; ++e) {
        const std::string digits = std::to_string(static_cast<int>(std::pow(10, (e + 15) % 3)));
        EXPECT_EQ(axis.FormatLabel(PowerOfTen(e)), digits + "fpnum kMGT"[(e + 15) / 3]) << e;
    }
}

// Steps of 1, 2 or 5 about 80 pixels apart, in five, two or one parts.
TEST(LinearAxis, TicksStandAtRoundValues) {
    const struct {
        int32_t pixels, unit;
        double low, high;
        double tickLow, tickHigh, tickStep;
        int32_t labelEvery;
    } cases[] = {
        {400, 1, -40.0, 10.0, -40.0, 10.0, 2.0, 5},   // 10 in 80 pixels: steps of 10
        {800, 1, -40.0, 10.0, -40.0, 10.0, 1.0, 5},   // 5: steps of 5
        {400, 2, -40.0, 10.0, -40.0, 20.0, 4.0, 5},   // a display of twice the pixels
        {200, 1, -42.0, 11.0, -60.0, 20.0, 10.0, 2},  // 21.2: steps of 20 in 50 pixels
        {100, 1, 0.0, 0.11, 0.0, 0.2, 0.05, 2},       // 0.088: steps of 0.1
        {100, 1, -3e5, 0.0, -4e5, 0.0, 1e5, 2},       // 2.4e5: steps of 2e5
        {20, 1, 0.0, 1.0, 0.0, 2.0, 2.0, 1},          // 4: steps of 2 in 20 pixels
        {100, 1, 0.0, 0.0, 0.0, 0.0, 0.0, 0},         // empty ranges have no ticks
        {100, 1, 0.0, infinity, 0.0, infinity, 0.0, 0},
    };
    for (const auto& c : cases) {
        CGraphAxis axis;
        axis.pixels = c.pixels;
        axis.unit = c.unit;
        axis.SetRange(c.low, c.high);
        const auto name = testing::PrintToString(c.low) + " to " + testing::PrintToString(c.high);
        EXPECT_DOUBLE_EQ(axis.tickLow, c.tickLow) << name;
        EXPECT_DOUBLE_EQ(axis.tickHigh, c.tickHigh) << name;
        EXPECT_DOUBLE_EQ(axis.tickStep, c.tickStep) << name;
        EXPECT_EQ(axis.labelEvery, c.labelEvery) << name;
        EXPECT_EQ(std::pair(axis.low, axis.high), std::pair(c.low, c.high));
    }
}

TEST(LogAxis, WidensToWholeDigitsOnly) {
    for (int32_t i = 0; i < 81; ++i) {
        const int32_t digit = i % 9 + 1;
        const double exact = digit * PowerOfTen(i / 9 - 3);
        CGraphAxis axis;
        axis.scale = logScale;
        axis.SetRange(exact, exact);
        EXPECT_NEAR(axis.tickLow, std::log10(exact), 1e-12);
        EXPECT_NEAR(axis.tickHigh, std::log10(exact), 1e-12);
        EXPECT_EQ(DecadeDigit(axis.tickLow), digit) << exact;
        axis.SetRange(exact * 1.05, exact * 1.05);
        EXPECT_NEAR(axis.tickLow, std::log10(exact), 1e-12);
        EXPECT_NEAR(axis.tickHigh, std::log10(exact + exact / digit), 1e-12);
    }
}

TEST(Axis, PixelsAreTruncatedTowardZeroAndNeverOverflow) {
    CGraphAxis axis;
    axis.pixels = 100;
    axis.SetFixedRange(-40.0, 10.0, 5, 2);
    EXPECT_EQ(axis.tickStep, 5.0);
    EXPECT_EQ(axis.labelEvery, 2);
    axis.tickLow = -50.0;
    axis.tickHigh = 50.0;
    constexpr int32_t far = CGraphAxis::farthest;
    const std::pair<double, int32_t> pixels[] = {
        {-40.0, 0},  {10.0, 100},       {-39.6, 0},   {-39.5, 1},          {-40.4, 0},
        {-40.6, -1}, {-infinity, -far}, {1e300, far}, {std::nan(""), -far}};
    for (const auto& [value, pixel] : pixels) {
        EXPECT_EQ(axis.ToPixel(value), pixel) << value;
    }
    axis.snapToTicks = true;
    EXPECT_EQ(axis.ToPixel(10.0), 60);
}

}  // namespace
}  // namespace tonvane
