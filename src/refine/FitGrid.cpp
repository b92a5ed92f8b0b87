#include "refine/FitGrid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr double gridAnchorHz = 50.0;
constexpr double gridSpan = 300.0;  // from 50 Hz to 15 kHz
constexpr double gridLowestHz = 8.0;
constexpr double gridHighestShare = 0.49;  // of the sample rate
constexpr double wantedFloorDb = -60.0;
constexpr double wantedStepDb = 0x1p-20;

constexpr double lowestPairHz = 15.0;
constexpr double highestPairShare = 0.47;
constexpr double smallestPairQ = 0.05;

// Below 50 Hz and above 20 kHz hardly anything is heard, and the correction is not to be bent
// there. Edges lie a little below their frequency, for a row whose points fall on them.
double weightAt(double hertz) {
    if (hertz < 19.99) {
        return 0.04;
    }
    if (hertz < 49.99) {
        return 0.25;
    }
    return hertz > 20000.0 ? 0.0225 : 1.0;
}

}  // namespace

double TangentSquare(double hertz, double sampleRate) {
    const double tangent = elementary::Tan(std::numbers::pi * hertz / sampleRate);
    return tangent * tangent;
}

FitGrid MakeFitGrid(int32_t sampleRate, int32_t points) {
    FitGrid grid;
    const double step = elementary::Log(gridSpan) / (points - 1);
    const int32_t first =
        -elementary::TruncateToInt(elementary::Log(gridAnchorHz / gridLowestHz) / step);
    const int32_t last = elementary::TruncateToInt(
        elementary::Log(gridHighestShare * sampleRate / gridAnchorHz) / step);
    for (int32_t i = first; i <= last; ++i) {
        const double hertz = gridAnchorHz * elementary::Exp(step * i);
        grid.hertz.push_back(hertz);
        grid.tangents.push_back(TangentSquare(hertz, sampleRate));
        grid.weights.push_back(weightAt(hertz));
        grid.weightSum += grid.weights.back();
    }
    grid.wanted.assign(grid.size(), 0.0);
    grid.lowestFrequency = 0.5 * elementary::Log(TangentSquare(lowestPairHz, sampleRate));
    grid.highestFrequency = 0.5 * elementary::Log(TangentSquare(highestPairShare, 1.0));
    grid.lowestDamping = -elementary::Log(largestPairQ);
    grid.highestDamping = -elementary::Log(smallestPairQ);
    return grid;
}

void SetWanted(std::span<const double> levels, int32_t sampleRate, FitGrid& grid) {
    const auto last = static_cast<double>(levels.size() - 1);
    for (size_t t = 0; t < grid.size(); ++t) {
        const double position = std::min(grid.hertz[t] * 2.0 * last / sampleRate, last - 1e-3);
        const auto i = static_cast<size_t>(position);
        const double share = position - static_cast<double>(i);
        const double level =
            std::max((1.0 - share) * levels[i] + share * levels[i + 1], wantedFloorDb);
        grid.wanted[t] = std::floor(level / wantedStepDb + 0.5) * wantedStepDb;
    }
}

double WeightedRmsDb(std::span<const double> levels, const FitGrid& grid) {
    double sum = 0.0;
    for (size_t t = 0; t < grid.size(); ++t) {
        const double error = levels[t] - grid.wanted[t];
        sum += grid.weights[t] * error * error;
    }
    return std::sqrt(sum / grid.weightSum);
}

}  // namespace tonvane
