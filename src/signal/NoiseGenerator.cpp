#include "signal/NoiseGenerator.h"

namespace tonvane {

// A linear congruential generator modulo 2^32 (multiplier and increment of Numerical Recipes,
// section 7.1); the upper bits are the good ones.
int32_t NoiseGenerator::next() {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<int32_t>(state_ >> 17U);
}

}  // namespace tonvane
