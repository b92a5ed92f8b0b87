#include "tuning/FilterFigures.h"

#include <algorithm>
#include <cmath>

#include "design/CascadeResponse.h"

namespace tonvane {

namespace {

// Low poles are narrow in hertz and wide in octaves: both spacings together leave no gap.
std::vector<double> denseGrid(double half) {
    constexpr int32_t even = 32768;
    constexpr int32_t geometric = 8192;
    constexpr double decades = 5.0;
    std::vector<double> grid;
    grid.reserve(even + 1 + geometric);
    for (int32_t i = 0; i <= even; ++i) {
        grid.push_back(half * i / even);
    }
    for (int32_t i = 0; i < geometric; ++i) {
        grid.push_back(half * std::pow(10.0, -decades * i / geometric));
    }
    return grid;
}

}  // namespace

HighestGain HighestGainOf(std::span<const int32_t> words, int32_t sampleRate) {
    const std::vector<double> grid = denseGrid(sampleRate / 2.0);
    const std::vector<double> levels = CascadeResponseDb(words, grid, sampleRate);
    const auto highest = std::ranges::max_element(levels);
    return {*highest, grid[static_cast<size_t>(highest - levels.begin())],
            static_cast<int32_t>(grid.size())};
}

}  // namespace tonvane
