// Digital IIR filters of the classic families by frequency and bilinear transform.
#pragma once

#include <cstdint>

#include "filters/RationalFunction.h"

namespace tonvane {

enum class FilterFamily : int32_t { Butterworth, Chebyshev1, Chebyshev2, Elliptic, Bessel };

enum class BandType : int32_t { LowPass, HighPass, BandPass, BandStop };

// The result is a function of z^-1, ascending: b0, b1, ... over 1, a1, ..., of the order of the
// prototype in low-pass and high-pass and of twice that in band-pass and band-stop.
//
// passbandDb is the loss at the pass band's edge and the ripple (Butterworth, Chebyshev1, Elliptic,
// Bessel), stopbandDb the least loss in the stop band (Chebyshev2, Elliptic); both above 0.
// edgeFrequency is the edge, for Chebyshev2 that of the stop band, or, on the warped axis, the
// geometric middle of the band. Only the ratios of the three frequencies count. The edge is
// pre-warped, t = tan(pi edge/fs). The band's analog width is (pi/cos^2(t)) bandwidth/fs: with the
// cosine of t, where the slope of the tangent would ask for that of its angle. At low edges the two
// agree; upwards the band comes out wider than `bandwidth`, without limit where t is pi/2 (edge/fs
// near 0.32).
//
// An unknown family or band, an order below 1 or more than maximumOrder poles give an empty result.
// Nothing else is checked: an edge above half the sample frequency has a negative t, and values
// without sense give NaN.
CRationalFunction DesignClassicFilter(FilterFamily family, BandType band, int32_t order,
                                      double passbandDb, double stopbandDb, double sampleFrequency,
                                      double edgeFrequency, double bandwidth);

CRationalFunction DesignButterworthFilter(BandType band, int32_t order, double passbandDb,
                                          double sampleFrequency, double edgeFrequency,
                                          double bandwidth);

}  // namespace tonvane
