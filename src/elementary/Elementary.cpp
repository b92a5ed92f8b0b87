#include "elementary/Elementary.h"

#include <cmath>
#include <limits>

#include "elementary/DoubleDouble.h"

namespace tonvane::elementary {

std::complex<double> UnitPhasor(double radians) {
    const SineCosine both = SinCos(radians);
    return {both.cosine, both.sine};
}

int32_t TruncateToInt(double x) {
    constexpr int32_t lowest = std::numeric_limits<int32_t>::min();
    constexpr int32_t highest = std::numeric_limits<int32_t>::max();
    if (std::isnan(x)) {
        return 0;
    }
    if (x <= lowest) {
        return lowest;
    }
    return x >= highest ? highest : static_cast<int32_t>(x);
}

double Magnitude(std::complex<double> z) {
    const double re = std::fabs(z.real());
    const double im = std::fabs(z.imag());
    const double larger = re > im ? re : im;
    const double smaller = re > im ? im : re;
    if (larger == 0.0 || std::isinf(larger)) {
        return larger + smaller;
    }
    const double ratio = smaller / larger;
    return larger * std::sqrt(1.0 + ratio * ratio);
}

std::complex<double> Quotient(std::complex<double> dividend, std::complex<double> divisor) {
    const double c = divisor.real();
    const double d = divisor.imag();
    if ((c == 0.0 && d == 0.0) || !std::isfinite(c) || !std::isfinite(d)) {
        return {nan, nan};
    }
    if (std::fabs(c) >= std::fabs(d)) {
        const double ratio = d / c;
        const double scale = c + d * ratio;
        return {(dividend.real() + dividend.imag() * ratio) / scale,
                (dividend.imag() - dividend.real() * ratio) / scale};
    }
    const double ratio = c / d;
    const double scale = c * ratio + d;
    return {(dividend.real() * ratio + dividend.imag()) / scale,
            (dividend.imag() * ratio - dividend.real()) / scale};
}

}  // namespace tonvane::elementary
