// Exponential and logarithm, and what is made of them.
//
// Both look up a double-double in a table that the compiler makes from the series, and leave a
// small rest to a short one (Tang 1989, 1990). They come out as double-doubles with an error below
// 2^-64 of the value, so that rounding them to a double gives the nearest one in nearly all cases.
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "elementary/DoubleDouble.h"
#include "elementary/Elementary.h"
#include "elementary/ExponentialTables.h"

namespace tonvane::elementary {

namespace {

// 2^exponent for exponents of normal numbers.
double powerOfTwo(int32_t exponent) {
    return std::bit_cast<double>(static_cast<uint64_t>(exponent + 1023) << 52U);
}

// value * 2^exponent.
struct Scaled {
    DoubleDouble value;  // 1 to 2
    int32_t exponent;

    // Rounded; infinity above the range, gradual underflow below.
    [[nodiscard]] double rounded() const {
        const int32_t half = exponent / 2;
        return (value.hi + value.lo) * powerOfTwo(half) * powerOfTwo(exponent - half);
    }

    // For exponents within the range of normal numbers.
    [[nodiscard]] DoubleDouble unscaled() const {
        const double scale = powerOfTwo(exponent);
        return {value.hi * scale, value.lo * scale};
    }
};

// exp(x) for |x| up to 800: x = k*ln2/64 + r, |r| <= ln2/128.
Scaled exponential(DoubleDouble x) {
    constexpr double stepsPerUnit = 0x1.71547652b82fep+6;  // 64/ln2
    constexpr double stepHigh = 0x1.62e42fefa0000p-7;      // products with k are exact
    constexpr double stepLow = 0x1.cf79abc9e3b3ap-46;
    const double k = Nearest(x.hi * stepsPerUnit);
    const DoubleDouble r = ExactSum(x.hi - k * stepHigh, x.lo - k * stepLow);
    const double s = r.hi;
    const double series =
        s * s *
        (1.0 / 2 + s * (1.0 / 6 + s * (1.0 / 24 + s * (1.0 / 120 + s * (1.0 / 720 + s / 5040)))));
    const double rest = series + r.lo * (1.0 + s);  // exp(r) = 1 + s + rest

    const auto step = static_cast<int32_t>(k);
    const int32_t place = step & (powerSteps - 1);
    const DoubleDouble power = powerTable[static_cast<size_t>(place)];
    const DoubleDouble product = ExactProduct(power.hi, s);
    const DoubleDouble sum = ExactSum(power.hi, product.hi);
    const double low = sum.lo + (product.lo + power.lo + (power.lo * s + power.hi * rest));
    return {FastSum(sum.hi, low), (step - place) / powerSteps};
}

// ln(x) for finite x > 0: x = 2^e * c * (1 + q), c = i/128 next to it, |q| < 2^-7.
DoubleDouble logarithm(double x) {
    int32_t e = 0;
    if (x < std::numeric_limits<double>::min()) {
        x *= 0x1p54;
        e = -54;
    }
    const auto bits = std::bit_cast<uint64_t>(x);
    e += static_cast<int32_t>(bits >> 52U) - 1023;
    double m = std::bit_cast<double>((bits & 0x000FFFFFFFFFFFFFU) | 0x3FF0000000000000U);
    if (m * logSteps > lastLogStep - 0.5) {
        m *= 0.5;
        ++e;
    }
    const double i = Nearest(m * logSteps);
    const double c = i / logSteps;
    const LogStep& step = logTable[static_cast<size_t>(i) - firstLogStep];
    // q = (m - c)/c as a double-double: q, whose halves have exact products with c, and what is
    // left.
    const double difference = m - c;  // exact
    const double q = difference * step.inverse;
    const DoubleDouble halves = Halves(q);
    const double qLow = ((difference - halves.hi * c) - halves.lo * c) * step.inverse;

    const DoubleDouble square = Square(q, halves);
    const double series =
        q * square.hi *
        (1.0 / 3 +
         q * (-1.0 / 4 +
              q * (1.0 / 5 +
                   q * (-1.0 / 6 +
                        q * (1.0 / 7 + q * (-1.0 / 8 + q * (1.0 / 9 + q * (-1.0 / 10))))))));

    constexpr double ln2High = 0x1.62e42fefa3800p-1;  // products with e are exact
    constexpr double ln2Low = 0x1.ef35793c76730p-45;
    const DoubleDouble first = ExactSum(e * ln2High, step.log.hi);
    const DoubleDouble second = ExactSum(first.hi, q);
    const DoubleDouble third = ExactSum(second.hi, -0.5 * square.hi);
    const double low = first.lo + second.lo + third.lo +
                       (e * ln2Low + step.log.lo + (qLow * (1.0 - q) - 0.5 * square.lo) + series);
    return FastSum(third.hi, low);
}

// What a logarithm of any base gives for an x that is not a finite number above 0.
double logarithmOfOther(double x) {
    if (x == 0.0) {
        return -infinity;
    }
    return x > 0.0 || std::isnan(x) ? x : nan;
}

bool isPositiveFinite(double x) {
    return x > 0.0 && x < infinity;
}

// Beyond these every result is infinity or 0.
constexpr double highestExponent = 710.0;
constexpr double lowestExponent = -746.0;

// exp(x), given an x that may be too large or small, or NaN.
double anyExponential(DoubleDouble x) {
    if (!(x.hi < highestExponent)) {
        return std::isnan(x.hi) ? x.hi : infinity;
    }
    return x.hi > lowestExponent ? exponential(x).rounded() : 0.0;
}

}  // namespace

double Exp(double x) {
    return anyExponential({x, 0.0});
}

double Exp10(double x) {
    constexpr double beyond = 400.0;
    if (!(std::fabs(x) < beyond)) {
        return anyExponential({2.0 * x, 0.0});  // infinity, 0 or NaN
    }
    return anyExponential(naturalLogOf10 * DoubleDouble{x, 0.0});
}

double Log(double x) {
    if (!isPositiveFinite(x)) {
        return logarithmOfOther(x);
    }
    const DoubleDouble result = logarithm(x);
    return result.hi + result.lo;
}

double Log10(double x) {
    if (!isPositiveFinite(x)) {
        return logarithmOfOther(x);
    }
    const DoubleDouble result = logarithm(x) * decimalLogOfE;
    return result.hi + result.lo;
}

double Pow(double base, double exponent) {
    if (exponent == 0.0 || base == 1.0) {
        return 1.0;
    }
    if (std::isnan(exponent) || !isPositiveFinite(base)) {
        if (std::isnan(exponent) || std::isnan(base) || base < 0.0) {
            return nan;
        }
        return (base == 0.0) == (exponent < 0.0) ? infinity : 0.0;
    }
    const DoubleDouble log = logarithm(base);
    const double estimate = log.hi * exponent;
    if (!(estimate < highestExponent && estimate > lowestExponent)) {
        return anyExponential({estimate, 0.0});
    }
    return anyExponential(log * DoubleDouble{exponent, 0.0});
}

// (exp(x) + exp(-x)) / 2.
double Cosh(double x) {
    constexpr double oneTermIsEnough = 40.0;
    const DoubleDouble y = DoubleDouble{std::fabs(x), 0.0} - naturalLogOf2;
    if (!(y.hi < oneTermIsEnough)) {
        return std::isinf(x) ? infinity : anyExponential(y);
    }
    const DoubleDouble half = exponential(y).unscaled();
    const DoubleDouble result = half + DoubleDouble{0.25, 0.0} / half;
    return result.hi + result.lo;
}

// (exp(2x) - 1) / (exp(2x) + 1), or the series where that would cancel.
double Tanh(double x) {
    constexpr double seriesIsBetter = 0x1p-5;
    constexpr double isOne = 20.0;
    constexpr double isItself = 0x1p-28;
    const double y = std::fabs(x);
    if (!(y >= isItself)) {
        return x;
    }
    if (y < seriesIsBetter) {
        const double z = x * x;
        return x + x * z *
                       (-1.0 / 3 +
                        z * (2.0 / 15 + z * (-17.0 / 315 + z * (62.0 / 2835 - z * 1382 / 155925))));
    }
    if (y >= isOne) {
        return std::copysign(1.0, x);
    }
    const DoubleDouble e = exponential({2.0 * y, 0.0}).unscaled();
    constexpr DoubleDouble one{1.0, 0.0};
    const DoubleDouble result = (e - one) / (e + one);
    return std::copysign(result.hi + result.lo, x);
}

}  // namespace tonvane::elementary
