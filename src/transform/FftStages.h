// The radix-2 stages of the complex transform behind SpectrumBuffer, two stages to a walk over the
// values and the bit reversal joined to the walk beside it.
//
// n is a power of two; `twiddle` is the table of FftTables, of which n/2 entries are read.
#pragma once

#include <complex>
#include <cstdint>

namespace tonvane {

// Z[k] = sum of source[t]*exp(-j*2*pi*k*t/n), unscaled; the two arrays must not overlap.
void ForwardStages(const std::complex<double>* source, std::complex<double>* z, int32_t n,
                   const std::complex<double>* twiddle);

// The inverse of ForwardStages, times n, in place.
void InverseStages(std::complex<double>* z, int32_t n, const std::complex<double>* twiddle);

}  // namespace tonvane
