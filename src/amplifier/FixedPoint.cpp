#include "amplifier/FixedPoint.h"

#include <cmath>

namespace tonvane {

namespace {

double roundAwayFromZero(double scaled) {
    return std::trunc(scaled + (scaled < 0.0 ? -0.5 : 0.5));
}

int32_t toWord(double value, double scale, int32_t mask) {
    const double steps = roundAwayFromZero(value * scale);
    if (!std::isfinite(steps)) {
        return 0;
    }
    // The remainder is exact and congruent modulo every mask, and fits where a value far out of
    // range would not.
    constexpr double wordSpan = 4294967296.0;
    return static_cast<int32_t>(static_cast<int64_t>(std::fmod(steps, wordSpan)) & mask);
}

}  // namespace

int32_t ToCoefWord(double value) {
    return toWord(value, coefficientScale, coefficientMask);
}

int32_t ToThresholdWord(double value) {
    return toWord(value, thresholdScale, thresholdMask);
}

double FromCoefWord(int32_t word) {
    constexpr int32_t signBit = 0x2000000;
    const int32_t bits = word & coefficientMask;
    const int32_t steps = (bits & signBit) != 0 ? bits - coefficientMask - 1 : bits;
    return steps / coefficientScale;
}

double FromThresholdWord(int32_t word) {
    return (word & thresholdMask) / thresholdScale;
}

bool FitsCoefWord(double value) {
    constexpr double limit = 4.0 * coefficientScale;
    const double steps = roundAwayFromZero(value * coefficientScale);
    return steps >= -limit && steps < limit;
}

}  // namespace tonvane
