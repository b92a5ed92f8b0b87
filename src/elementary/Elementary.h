// Elementary functions that give the same bits on every machine.
//
// The C library picks its exp, log, sin and cos by processor, and their last bits differ between
// the picks. The fit of the biquads amplifies a last bit into other filter words, so everything on
// the road from a response to the words takes these functions instead. Errors stay below 1 ulp;
// special values (zeros, infinities, NaN) go as in the C library. No function sets errno.
#pragma once

#include <complex>
#include <cstdint>

namespace tonvane::elementary {

struct SineCosine {
    double sine;
    double cosine;
};

double Exp(double x);
double Log(double x);
double Log10(double x);
double Atan2(double y, double x);
SineCosine SinCos(double radians);
double Tan(double radians);
double Cosh(double x);
double Tanh(double x);

// 10 to the power x.
double Exp10(double x);

// base to the power exponent, base > 0.
double Pow(double base, double exponent);

// exp(j*radians).
std::complex<double> UnitPhasor(double radians);

// The magnitude of a complex number by rescaling with its larger part: no overflow on the way.
double Magnitude(std::complex<double> z);

// The complex quotient by dividing by the larger part of the divisor first (Smith's method). A
// divisor that is zero or not finite gives NaN in both parts.
std::complex<double> Quotient(std::complex<double> dividend, std::complex<double> divisor);

// a*b by the four-multiplication formula, without the recovery of infinities of the standard's *.
inline std::complex<double> Product(std::complex<double> a, std::complex<double> b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

// Truncation toward zero. Values outside the range of the result give its nearest end, NaN gives 0.
int32_t TruncateToInt(double x);

// Squared magnitude, re*re + im*im.
inline double Power(std::complex<double> z) {
    return z.real() * z.real() + z.imag() * z.imag();
}

}  // namespace tonvane::elementary
