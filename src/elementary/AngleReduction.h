// Angles without their quarter turns.
#pragma once

#include <cstdint>

#include "elementary/DoubleDouble.h"

namespace tonvane::elementary {

// angle = rest + quarterTurns * pi/2, give or take whole turns; |rest| is at most pi/4, give or
// take 2^-20 of it, with an error below 2^-90 of itself; quarterTurns is 0 to 3.
struct ReducedAngle {
    DoubleDouble rest;
    int32_t quarterTurns;
};

// For any finite angle.
ReducedAngle ReduceAngle(double radians);

}  // namespace tonvane::elementary
