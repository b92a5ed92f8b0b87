// All five families in all four band types against an independent program's magnitudes, and what
// those do not show: losses, bad requests.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

#include <gmock/gmock.h>

#include "filters/ClassicFilter.h"
#include "filters/ClassicPrototypes.h"
#include "filters/EllipticFunctions.h"
#include "support/Files.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using enum FilterFamily;
using enum BandType;

constexpr int32_t lowest = std::numeric_limits<int32_t>::min();
constexpr int32_t highest = std::numeric_limits<int32_t>::max();
const double halfPowerDb = 10.0 * std::log10(2.0);

// Of a digital filter, apart from the code under test; the frequency is a fraction of the sample
// frequency.
double digitalDecibels(const CRationalFunction& h, double frequency) {
    const auto at = [frequency](const CPolynomial& p) {
        const std::span values(p.coefficients.get(), static_cast<size_t>(p.degree + 1));
        return std::abs(tests::PolynomialAt(values, frequency, 1.0));
    };
    return tests::Decibels(at(h.numerator) / at(h.denominator));
}

// The design that a line of the file tells: family band order edge bandwidth.
CRationalFunction textbookFilter(std::istream& line, double& lossBesideTextbook) {
    const auto read = [&line](const std::vector<std::string>& names) {
        std::string name;
        line >> name;
        return std::ranges::find(names, name) - names.begin();
    };
    const auto family = static_cast<FilterFamily>(
        read({"Butterworth", "Chebyshev1", "Chebyshev2", "Elliptic", "Bessel"}));
    const auto band = static_cast<BandType>(read({"LowPass", "HighPass", "BandPass", "BandStop"}));
    int32_t order = 0;
    double edge = 0.0, bandwidth = 0.0;
    line >> order >> edge >> bandwidth;
    const double stopDb = family == Elliptic ? 60.0 : 40.0;
    // An even-order Chebyshev stop-band filter has a loss at s = 0 that the textbook's has not: its
    // stop-band epsilon, turned over, enters as though it were a pass-band ripple.
    const double turnedOver = 1.0 / (std::pow(10.0, stopDb / 10.0) - 1.0);
    const bool hasLoss = family == Chebyshev2 && order % 2 == 0;
    lossBesideTextbook = hasLoss ? 10.0 * std::log10(1.0 + turnedOver) : 0.0;

    const double pass = family == Elliptic ? 0.5 : family == Chebyshev1 ? 1.0 : halfPowerDb;
    return DesignClassicFilter(family, band, order, pass, stopDb, 1.0, edge, bandwidth);
}

// The file says how its figures were made; frequencies are fractions of the sample frequency.
TEST(ClassicFilter, LevelsAreThoseOfAnIndependentProgram) {
    CRationalFunction h;
    double loss = 0.0;
    int32_t filters = 0;
    std::ifstream in(tests::TestData("filters/scipy-magnitudes.txt"));
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        double frequency = 0.0, decibels = 0.0, tolerance = 0.0;
        if (line.starts_with("  ")) {
            fields >> frequency >> decibels >> tolerance;
            EXPECT_NEAR(digitalDecibels(h, frequency), decibels - loss, tolerance) << filters;
        } else if (!line.starts_with("#")) {
            h = textbookFilter(fields, loss);
            ++filters;
        }
    }
    EXPECT_EQ(filters, 55);
}

TEST(ClassicFilter, BesselEdgeLiesAtTheLossAskedFor) {
    for (const auto& [order, lossDb] : {std::pair{2, 1.0}, {5, 12.0}, {8, 1.0}, {8, 12.0}}) {
        const auto low = DesignClassicFilter(Bessel, LowPass, order, lossDb, 0.0, 1.0, 0.1, 0.0);
        EXPECT_NEAR(digitalDecibels(low, 0.1), -lossDb, 1e-6);
    }
    // At order 1 the loss is not looked at: 1/(1 + s), half power at the edge.
    const auto first = DesignClassicFilter(Bessel, LowPass, 1, 12.0, 0.0, 1.0, 0.1, 0.0);
    EXPECT_NEAR(digitalDecibels(first, 0.1), -halfPowerDb, 1e-12);
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
            stopPeak = std::max(stopPeak, digitalDecibels(h, f));
        }
        EXPECT_NEAR(digitalDecibels(h, 0.1), -c.passDb, 1e-8) << c.order;
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
    EXPECT_NEAR(digitalDecibels(h, 0.4), -halfPowerDb, 1e-9);
    EXPECT_GT(h.denominator[2], 1.0);  // the poles leave the unit circle
}

TEST(ClassicFilter, RequestsWithoutAFilterGiveAnEmptyOne) {
    const struct {
        int32_t family, band, order;
    } cases[] = {{0, 0, lowest},  {1, 0, -1}, {2, 0, 0},  {3, 0, maximumOrder + 1},
                 {4, 0, highest}, {0, 4, 2},  {0, -1, 2}, {1, 2, maximumOrder / 2 + 1},
                 {5, 0, 2},       {-1, 0, 2}, {0, 5, 2},  {highest, lowest, 2}};
    for (const auto& [family, band, order] : cases) {
        const auto h =
            DesignClassicFilter(static_cast<FilterFamily>(family), static_cast<BandType>(band),
                                order, 1.0, 40.0, 1.0, 0.1, 0.02);
        EXPECT_TRUE(h.IsEmpty()) << family << " " << band << " " << order;
    }
}

TEST(ClassicFilter, SenselessValuesEndInAFilter) {
    using Values = std::numeric_limits<double>;
    testing::internal::CaptureStderr();
    for (const double bad :
         {0.0, -1.0, 1e-310, 1e300, Values::infinity(), -Values::infinity(), Values::quiet_NaN()}) {
        for (int32_t kind = 0; kind < 5 * 4 * 5; ++kind) {
            double v[] = {1.0, 40.0, 1.0, 0.1, 0.02};
            v[kind / 20] = bad;
            const auto h = DesignClassicFilter(static_cast<FilterFamily>(kind % 5),
                                               static_cast<BandType>(kind / 5 % 4), 3, v[0], v[1],
                                               v[2], v[3], v[4]);
            EXPECT_EQ(h.denominator[0], 1.0);
            EXPECT_LE(h.numerator.degree, 6);
        }
    }
    testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace tonvane
