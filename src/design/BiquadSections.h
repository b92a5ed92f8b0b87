// Second-order sections from roots.
#pragma once

#include <cstdint>
#include <span>

namespace tonvane {

// Arranges 2*sectionCount roots into sectionCount sections of three coefficients (1, c1, c2). Roots
// with an imaginary part below `tolerance` are real. Complex pairs come first, by rising angle;
// real roots follow, neighbours paired as they stand. The roots are reordered in place. With an odd
// number of real roots the last complex section takes one of them as though it were complex.
void RootsToBiquads(std::span<double> rootsRe, std::span<double> rootsIm,
                    std::span<double> sections, int32_t sectionCount, double tolerance);

}  // namespace tonvane
