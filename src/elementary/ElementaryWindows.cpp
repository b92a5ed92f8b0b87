#include <cmath>

#include "elementary/Elementary.h"

namespace tonvane::elementary {

double Exp(double x) {
    return std::exp(x);
}

double Log(double x) {
    return std::log(x);
}

double Log10(double x) {
    return std::log10(x);
}

double Exp10(double x) {
    return std::pow(10.0, x);
}

double Pow(double base, double exponent) {
    return std::pow(base, exponent);
}

double Atan2(double y, double x) {
    return std::atan2(y, x);
}

SineCosine SinCos(double radians) {
    return {std::sin(radians), std::cos(radians)};
}

double Tan(double radians) {
    return std::tan(radians);
}

double Cosh(double x) {
    return std::cosh(x);
}

double Tanh(double x) {
    return std::tanh(x);
}

}  // namespace tonvane::elementary
