// All five families in all four band types against an independent program's magnitudes.
#include <gmock/gmock.h>

#include "filters/Magnitude.h"
#include "filters/ScipyMagnitudes.h"

namespace tonvane::tests {
namespace {

constexpr double chebyshev2Decibels = 40.0;

CRationalFunction design(const ScipyFilter& f) {
    const double halfPower = 10.0 * std::log10(2.0);
    const double pass = f.family == Elliptic ? 0.5 : f.family == Chebyshev1 ? 1.0 : halfPower;
    const double stop = f.family == Elliptic ? 60.0 : chebyshev2Decibels;
    return DesignClassicFilter(f.family, f.band, f.order, pass, stop, 1.0, f.edge, f.bandwidth);
}

// An even-order Chebyshev stop-band filter has a loss at s = 0 that the textbook's has not: its
// stop-band epsilon, turned over, enters as though it were a pass-band ripple.
double lossBesideTextbook(const ScipyFilter& f) {
    const double turnedOver = 1.0 / (std::pow(10.0, chebyshev2Decibels / 10.0) - 1.0);
    const bool hasLoss = f.family == Chebyshev2 && f.order % 2 == 0;
    return hasLoss ? 10.0 * std::log10(1.0 + turnedOver) : 0.0;
}

TEST(ClassicFilters, LevelsDepartFromTheIndependentProgram) {
    for (const auto& filter : scipyFilters) {
        SCOPED_TRACE(testing::Message()
                     << "family " << int(filter.family) << ", band " << int(filter.band)
                     << ", order " << filter.order << ", edge " << filter.edge);
        const auto h = design(filter);
        for (const auto& point : filter.points) {
            EXPECT_NEAR(DigitalDecibels(h, point.frequency),
                        point.decibels - lossBesideTextbook(filter), point.tolerance)
                << "at " << point.frequency;
        }
    }
}

}  // namespace
}  // namespace tonvane::tests
