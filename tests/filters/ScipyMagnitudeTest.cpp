// All five families in all four band types against an independent program's magnitudes.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "filters/ClassicFilter.h"
#include "filters/Magnitude.h"
#include "support/Files.h"

namespace tonvane::tests {
namespace {

using enum FilterFamily;

constexpr double chebyshev2Decibels = 40.0;

// The design that a line of the file tells: family band order edge bandwidth.
CRationalFunction design(std::istream& line, double& lossBesideTextbook) {
    const auto read = [&line](const std::vector<std::string>& names) {
        std::string name;
        line >> name;
        return std::ranges::find(names, name) - names.begin();
    };
    const auto family = static_cast<FilterFamily>(
        read({"Butterworth", "Chebyshev1", "Chebyshev2", "Elliptic", "Bessel"}));
    const auto band = static_cast<BandType>(read({"LowPass", "HighPass", "BandPass", "BandStop"}));
    int32_t order = 0;
    double edge = 0.0;
    double bandwidth = 0.0;
    line >> order >> edge >> bandwidth;
    // An even-order Chebyshev stop-band filter has a loss at s = 0 that the textbook's has not: its
    // stop-band epsilon, turned over, enters as though it were a pass-band ripple.
    const double turnedOver = 1.0 / (std::pow(10.0, chebyshev2Decibels / 10.0) - 1.0);
    const bool hasLoss = family == Chebyshev2 && order % 2 == 0;
    lossBesideTextbook = hasLoss ? 10.0 * std::log10(1.0 + turnedOver) : 0.0;

    const double halfPower = 10.0 * std::log10(2.0);
    const double pass = family == Elliptic ? 0.5 : family == Chebyshev1 ? 1.0 : halfPower;
    const double stop = family == Elliptic ? 60.0 : chebyshev2Decibels;
    return DesignClassicFilter(family, band, order, pass, stop, 1.0, edge, bandwidth);
}

// The file says how its figures were made; frequencies are fractions of the sample frequency.
TEST(ClassicFilters, LevelsAreThoseOfAnIndependentProgram) {
    CRationalFunction h;
    double loss = 0.0;
    std::string filter;
    int32_t filters = 0;
    std::ifstream in(TestData("filters/scipy-magnitudes.txt"));
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        double frequency = 0.0;
        double decibels = 0.0;
        double tolerance = 0.0;
        if (line.starts_with("  ")) {
            fields >> frequency >> decibels >> tolerance;
            EXPECT_NEAR(DigitalDecibels(h, frequency), decibels - loss, tolerance)
                << filter << " at " << frequency;
        } else if (!line.starts_with("#")) {
            h = design(fields, loss);
            filter = line;
            ++filters;
        }
    }
    EXPECT_EQ(filters, 55);
}

}  // namespace
}  // namespace tonvane::tests
