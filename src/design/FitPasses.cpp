#include "design/FitPasses.h"

#include <algorithm>
#include <bit>

#include "design/LapackPasses.h"
#include "design/LatticePasses.h"
#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr double lowestHz = 50.0;
constexpr double frequencySpan = 300.0;  // 50 Hz to 15 kHz

}  // namespace

std::unique_ptr<FitPasses> MakeFitPasses(FitSolver solver) {
    if (solver == FitSolver::lapack) {
        return std::make_unique<LapackPasses>();
    }
    return std::make_unique<LatticePasses>();
}

std::vector<double> ComparisonAngles(int32_t sampleRate) {
    constexpr double twoPi = 6.283185307179586;
    const double ratio = elementary::Pow(frequencySpan, 1.0 / (FitPasses::comparisonPoints - 1));
    std::vector<double> angles(FitPasses::comparisonPoints);
    double x = lowestHz / sampleRate;
    for (double& angle : angles) {
        angle = -twoPi * x;
        x *= ratio;
    }
    return angles;
}

std::vector<double> FrequencyTaper(int32_t sampleRate) {
    const int32_t start = 100 * FitPasses::prefilterLength / sampleRate + 1;
    const int32_t end = 10000 * FitPasses::prefilterLength / sampleRate + 1;
    const double floor = static_cast<double>(start) / end;
    const double ratio = elementary::Pow(floor, 1.0 / (end - start));
    std::vector<double> taper(FitPasses::prefilterLength / 2 + 1);
    double g = 1.0;
    for (int32_t k = 0; k < static_cast<int32_t>(taper.size()); ++k) {
        if (k >= start) {
            g *= ratio;
        }
        g = std::max(g, floor);
        taper[k] = g;
    }
    return taper;
}

int32_t ConvolutionLength(int32_t taps) {
    return static_cast<int32_t>(
        std::bit_ceil(static_cast<uint32_t>(taps + FitPasses::prefilterLength - 1)));
}

}  // namespace tonvane
