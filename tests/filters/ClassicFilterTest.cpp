// What the magnitudes of an independent program do not show: losses, bad requests.
#include <limits>

#include <gmock/gmock.h>

#include "filters/ClassicFilter.h"
#include "filters/ClassicPrototypes.h"
#include "filters/EllipticFunctions.h"
#include "filters/Magnitude.h"

namespace tonvane {
namespace {

using tests::DigitalDecibels;
using enum FilterFamily;
using enum BandType;

constexpr int32_t lowest = std::numeric_limits<int32_t>::min();
constexpr int32_t highest = std::numeric_limits<int32_t>::max();
const double halfPowerDb = 10.0 * std::log(2.0) / std::log(10.0);

TEST(ClassicFilter, BesselEdgeLiesAtTheLossAskedFor) {
    for (const double lossDb : {1.0, 12.0}) {
        for (const int32_t order : {2, 5, 8}) {
            const auto low =
                DesignClassicFilter(Bessel, LowPass, order, lossDb, 0.0, 1.0, 0.1, 0.0);
            EXPECT_NEAR(DigitalDecibels(low, 0.1), -lossDb, 1e-6);
        }
    }
    // At order 1 the loss is not looked at: 1/(1 + s), half power at the edge.
    const auto first = DesignClassicFilter(Bessel, LowPass, 1, 12.0, 0.0, 1.0, 0.1, 0.0);
    EXPECT_NEAR(DigitalDecibels(first, 0.1), -halfPowerDb, 1e-12);
}

TEST(ClassicFilter, EllipticRippleFillsTheLossesAskedFor) {
    const struct {
        int32_t order;
        double passDb, stopDb, stopEdge;
    } cases[] = {{2, 3.0, 20.0, 0.28}, {3, 0.1, 50.0, 0.33}, {5, 1.0, 40.0, 0.14}};
    for (const auto& c : cases) {
        const auto h =
            DesignClassicFilter(Elliptic, LowPass, c.order, c.passDb, c.stopDb, 1.0, 0.1, 0.0);
        double stopPeak = -1e9;
        for (double f = c.stopEdge; f < 0.499; f += 1e-5) {
            stopPeak = std::max(stopPeak, DigitalDecibels(h, f));
        }
        EXPECT_NEAR(DigitalDecibels(h, 0.1), -c.passDb, 1e-8) << c.order;
        EXPECT_NEAR(stopPeak, -c.stopDb, 1e-3) << c.order;
    }
    EXPECT_NEAR(CarlsonRF(0.0, 1.0, 2.0), 1.3110287771460599052, 4e-16);  // a lemniscate's
    // Losses that leave no room between the bands are told of.
    testing::internal::CaptureStderr();
    DesignClassicFilter(Elliptic, LowPass, 4, 3.0, 1.0, 1.0, 0.1, 0.0);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("invalid arguments in rf\n"));
}

TEST(ClassicFilter, AnEdgeAboveHalfTheSampleFrequencyIsTakenAsItsImage) {
    const auto h = DesignButterworthFilter(LowPass, 2, halfPowerDb, 2.0, 1.2, 0.0);
    EXPECT_NEAR(DigitalDecibels(h, 0.4), -halfPowerDb, 1e-9);
    EXPECT_GT(h.denominator[2], 1.0);  // the poles leave the unit circle
}

TEST(ClassicFilter, RequestsWithoutAFilterGiveAnEmptyOne) {
    const auto isEmpty = [](int32_t family, int32_t band, int32_t order) {
        return DesignClassicFilter(static_cast<FilterFamily>(family), static_cast<BandType>(band),
                                   order, 1.0, 40.0, 1.0, 0.1, 0.02)
            .IsEmpty();
    };
    for (const int32_t family : {0, 1, 2, 3, 4}) {
        for (const int32_t order : {lowest, -1, 0, maximumOrder + 1, highest}) {
            EXPECT_TRUE(isEmpty(family, 0, order)) << family << " " << order;
        }
        EXPECT_TRUE(isEmpty(family, 2, maximumOrder / 2 + 1));
    }
    for (const int32_t unknown : {lowest, -1, 5, highest}) {
        EXPECT_TRUE(isEmpty(unknown, 0, 2));
        EXPECT_TRUE(isEmpty(0, unknown, 2));
    }
}

TEST(ClassicFilter, SenselessValuesEndInAFilter) {
    using Values = std::numeric_limits<double>;
    testing::internal::CaptureStderr();
    for (const double bad :
         {0.0, -1.0, 1e-310, 1e300, Values::infinity(), -Values::infinity(), Values::quiet_NaN()}) {
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
