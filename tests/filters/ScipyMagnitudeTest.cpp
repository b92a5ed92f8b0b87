// All five families in all four band types against an independent program's magnitudes.
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "filters/ClassicFilter.h"
#include "filters/Magnitude.h"

namespace tonvane::tests {
namespace {

using enum FilterFamily;
using enum BandType;

struct ScipyFilter {
    FilterFamily family;
    BandType band;
    int32_t order;
    double edge;
    double bandwidth;
    struct Point {
        double frequency, decibels, tolerance;
    };
    std::vector<Point> points;
};

// The file says how its figures were made; frequencies are fractions of the sample frequency.
std::vector<ScipyFilter> scipyFilters() {
    const std::map<std::string, FilterFamily> families{{"Butterworth", Butterworth},
                                                       {"Chebyshev1", Chebyshev1},
                                                       {"Chebyshev2", Chebyshev2},
                                                       {"Elliptic", Elliptic},
                                                       {"Bessel", Bessel}};
    const std::map<std::string, BandType> bands{{"LowPass", LowPass},
                                                {"HighPass", HighPass},
                                                {"BandPass", BandPass},
                                                {"BandStop", BandStop}};
    std::vector<ScipyFilter> filters;
    std::ifstream in(TONVANE_TEST_DATA "/filters/scipy-magnitudes.txt");
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        if (line.starts_with("  ")) {
            ScipyFilter::Point& point = filters.back().points.emplace_back();
            fields >> point.frequency >> point.decibels >> point.tolerance;
        } else if (!line.starts_with("#")) {
            ScipyFilter& filter = filters.emplace_back();
            std::string family;
            std::string band;
            fields >> family >> band >> filter.order >> filter.edge >> filter.bandwidth;
            filter.family = families.at(family);
            filter.band = bands.at(band);
        }
    }
    return filters;
}

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
    const auto filters = scipyFilters();
    ASSERT_EQ(filters.size(), 55U);
    for (const auto& filter : filters) {
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
