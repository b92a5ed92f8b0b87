#include <sleef.h>

#include "elementary/Elementary.h"

// The cinz entries are the library's scalar functions without fused multiply-add and without a
// choice by processor: their results are specified to be the same on every machine.
namespace tonvane::elementary {

double Exp(double x) {
    return Sleef_cinz_expd1_u10purec(x);
}

double Log(double x) {
    return Sleef_cinz_logd1_u10purec(x);
}

double Log10(double x) {
    return Sleef_cinz_log10d1_u10purec(x);
}

double Exp10(double x) {
    return Sleef_cinz_exp10d1_u10purec(x);
}

double Pow(double base, double exponent) {
    return Sleef_cinz_powd1_u10purec(base, exponent);
}

double Atan2(double y, double x) {
    return Sleef_cinz_atan2d1_u10purec(y, x);
}

SineCosine SinCos(double radians) {
    const auto both = Sleef_cinz_sincosd1_u10purec(radians);
    return {both.x, both.y};
}

double Tan(double radians) {
    return Sleef_cinz_tand1_u10purec(radians);
}

double Cosh(double x) {
    return Sleef_cinz_coshd1_u10purec(x);
}

double Tanh(double x) {
    return Sleef_cinz_tanhd1_u10purec(x);
}

}  // namespace tonvane::elementary
