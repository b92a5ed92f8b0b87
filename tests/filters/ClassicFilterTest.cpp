// What the magnitudes of an independent program do not show: losses, bad requests.
#include <limits>

#include <gmock/gmock.h>

#include "filters/ClassicFilter.h"
#include "filters/ClassicPrototypes.h"
#include "filters/Magnitude.h"

namespace tonvane {
namespace {

using tests::DigitalDecibels;
using enum FilterFamily;
using enum BandType;

const double halfPowerDb = 10.0 * std::log(2.0) / std::log(10.0);

TEST(ClassicFilter, BesselEdgeIsNotAtTheLossAskedFor) {
    for (const double lossDb : {1.0, 3.0, 12.0}) {
        for (const int32_t order : {2, 3, 5, 8}) {
            const auto low =
                DesignClassicFilter(Bessel, LowPass, order, lossDb, 0.0, 1.0, 0.1, 0.0);
            const auto high =
                DesignClassicFilter(Bessel, HighPass, order, lossDb, 0.0, 1.0, 0.2, 0.0);
            EXPECT_NEAR(DigitalDecibels(low, 0.1), -lossDb, 1e-6);
            EXPECT_NEAR(DigitalDecibels(low, 0.0), 0.0, 1e-7);
            EXPECT_NEAR(DigitalDecibels(high, 0.2), -lossDb, 1e-6);
            EXPECT_NEAR(DigitalDecibels(high, 0.5), 0.0, 1e-7);
        }
    }
    // At order 1 the loss is not looked at: 1/(1 + s), half power at the edge.
    const auto first = DesignClassicFilter(Bessel, LowPass, 1, 12.0, 0.0, 1.0, 0.1, 0.0);
    EXPECT_NEAR(DigitalDecibels(first, 0.1), -halfPowerDb, 1e-12);
}

TEST(ClassicFilter, EdgeAboveHalfTheSampleFrequencyIsRefused) {
    testing::internal::CaptureStderr();
    const auto h = DesignButterworthFilter(LowPass, 2, halfPowerDb, 2.0, 1.2, 0.0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    // t turns negative: the poles leave the unit circle, the magnitude is that of the edge's image.
    EXPECT_NEAR(DigitalDecibels(h, 0.4), -halfPowerDb, 1e-9);
    EXPECT_GT(h.denominator[2], 1.0);
}

TEST(ClassicFilter, RequestsWithoutAFilterGiveOne) {
    const auto design = [](int32_t family, int32_t band, int32_t order) {
        return DesignClassicFilter(static_cast<FilterFamily>(family), static_cast<BandType>(band),
                                   order, 1.0, 40.0, 1.0, 0.1, 0.02);
    };
    constexpr int32_t lowest = std::numeric_limits<int32_t>::min();
    constexpr int32_t highest = std::numeric_limits<int32_t>::max();
    for (const int32_t family : {0, 1, 2, 3, 4}) {
        EXPECT_EQ(design(family, 1, 3).denominator.degree, 3);
        for (const int32_t order : {lowest, -1, 0, maximumOrder + 1, highest}) {
            EXPECT_TRUE(design(family, 0, order).IsEmpty()) << family << " " << order;
        }
        EXPECT_TRUE(design(family, 2, maximumOrder / 2 + 1).IsEmpty());
    }
    for (const int32_t unknown : {lowest, -1, 5, highest}) {
        EXPECT_TRUE(design(unknown, 0, 2).IsEmpty());
        EXPECT_TRUE(design(0, unknown, 2).IsEmpty());
    }
    EXPECT_TRUE(design(0, 4, 2).IsEmpty());
}

TEST(ClassicFilter, SenselessValuesCrashOrNeverEnd) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    testing::internal::CaptureStderr();
    for (const double bad : {0.0, -1.0, 1e-310, 1e300, infinity, -infinity, nan}) {
        for (const auto family : {Butterworth, Chebyshev1, Chebyshev2, Elliptic, Bessel}) {
            for (const auto band : {LowPass, HighPass, BandPass, BandStop}) {
                for (const size_t which : {0, 1, 2, 3, 4}) {
                    double values[] = {1.0, 40.0, 1.0, 0.1, 0.02};
                    values[which] = bad;
                    const auto h = DesignClassicFilter(family, band, 3, values[0], values[1],
                                                       values[2], values[3], values[4]);
                    EXPECT_EQ(h.denominator[0], 1.0);
                    EXPECT_LE(h.numerator.degree, 6);
                }
            }
        }
    }
    testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace tonvane
