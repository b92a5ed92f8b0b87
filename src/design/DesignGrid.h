// The grid on which an equalizer is designed: point i lies at i*fs/4096, from 0 to half the rate.
// Curves on it hold power ratios, not decibels.
#pragma once

#include <array>
#include <cstdint>

#include "transform/ResponseShape.h"

namespace tonvane {

constexpr int32_t designLength = 4096;
constexpr int32_t designPoints = designLength / 2 + 1;

using DesignCurve = std::array<double, designPoints>;

}  // namespace tonvane
