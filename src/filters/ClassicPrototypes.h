// Analog low-pass prototypes of the classic families as functions of s, edge at 1 rad/s.
//
// Each is a product of second-order sections and, at an odd order, one of first order. An order
// outside 1 to maximumOrder gives an empty function. Other arguments are not checked: values
// without sense give NaN or infinities.
#pragma once

#include "filters/RationalFunction.h"

namespace tonvane {

// Binomial coefficients above this order leave the range of double, and with them those of every
// digital filter.
constexpr int32_t maximumOrder = 1029;

constexpr bool IsDesignableOrder(int32_t order) {
    return order >= 1 && order <= maximumOrder;
}

// sqrt(10^(dB/10) - 1): the epsilon in |H|^2 = 1/(1 + epsilon^2) of a level dB below 0 dB.
double EpsilonOfDecibels(double decibels);

// |H|^2 = 1/(1 + epsilon^2 w^2N).
CRationalFunction ButterworthPrototype(int32_t order, double epsilon);

// |H|^2 = 1/(1 + epsilon^2 T_N(w)^2): equal ripple from 0 to the edge.
CRationalFunction Chebyshev1Prototype(int32_t order, double epsilon);

// Equal ripple at 1/sqrt(1 + epsilon^2) from the edge up, epsilon being that of the stop band. An
// even order is lower by the factor 1/sqrt(1 + 1/epsilon^2) at all frequencies, s = 0 included; the
// textbook's is not.
CRationalFunction Chebyshev2Prototype(int32_t order, double epsilon);

// 1 over the reverse Bessel polynomial, its frequency scaled so that the edge is edgeDecibels below
// 0 dB. Order 1 is 1/(1 + s) whatever edgeDecibels says.
CRationalFunction BesselPrototype(int32_t order, double edgeDecibels);

}  // namespace tonvane
