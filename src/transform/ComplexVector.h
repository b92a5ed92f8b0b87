// A growable, contiguous vector of complex doubles, (re, im) pairs of 16 bytes. Resizing keeps the
// leading elements and fills new ones with zero.
#pragma once

#include <complex>
#include <vector>

namespace tonvane {

using ComplexVector = std::vector<std::complex<double>>;

}  // namespace tonvane
