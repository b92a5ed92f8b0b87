// Sine, cosine and tangent, and the angle of a point.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "elementary/AngleReduction.h"
#include "elementary/DoubleDouble.h"
#include "elementary/Elementary.h"

namespace tonvane::elementary {

namespace {

// Below this, sine, tangent and arc tangent are their argument.
constexpr double smallAngle = 0x1p-27;

// Taylor series for |x| <= pi/4.
DoubleDouble sineOf(DoubleDouble x) {
    const double z = x.hi * x.hi;
    const double series =
        -1.0 / 6 +
        z * (1.0 / 120 + z * (-1.0 / 5040 +
                              z * (1.0 / 362880 + z * (-1.0 / 39916800 +
                                                       z * (1.0 / 6227020800 +
                                                            z * (-1.0 / 1307674368000 +
                                                                 z * (1.0 / 355687428096000)))))));
    return FastSum(x.hi, x.hi * z * series + x.lo * (1.0 - 0.5 * z));
}

DoubleDouble cosineOf(DoubleDouble x) {
    const DoubleDouble square = Square(x.hi, Halves(x.hi));
    const double z = square.hi;
    const double series =
        z * z *
        (1.0 / 24 +
         z * (-1.0 / 720 +
              z * (1.0 / 40320 + z * (-1.0 / 3628800 +
                                      z * (1.0 / 479001600 + z * (-1.0 / 87178291200 +
                                                                  z * (1.0 / 20922789888000 -
                                                                       z / 6402373705728000)))))));
    const DoubleDouble head = FastSum(1.0, -0.5 * z);
    return FastSum(head.hi, head.lo + (series - 0.5 * square.lo - x.hi * x.lo));
}

// Sine and cosine of an angle that is no small one.
struct Pair {
    DoubleDouble sine;
    DoubleDouble cosine;
};

Pair pairOf(double radians) {
    const ReducedAngle angle = ReduceAngle(radians);
    const DoubleDouble sine = sineOf(angle.rest);
    const DoubleDouble cosine = cosineOf(angle.rest);
    switch (angle.quarterTurns) {
        case 0:
            return {sine, cosine};
        case 1:
            return {cosine, -sine};
        case 2:
            return {-sine, -cosine};
        default:
            return {-cosine, sine};
    }
}

constexpr int32_t tangentSteps = 64;

// The arc tangent of t, |t| < 1/64.
constexpr DoubleDouble smallArcTangent(DoubleDouble t) {
    const double z = t.hi * t.hi;
    const double series = -1.0 / 3 + z * (1.0 / 5 + z * (-1.0 / 7 + z * (1.0 / 9 - z / 11)));
    return FastSum(t.hi, t.lo + t.hi * z * series);
}

// The arc tangents of i/64, each from the one before by the difference of two angles; that by its
// series.
consteval std::array<DoubleDouble, tangentSteps + 1> arcTangents() {
    std::array<DoubleDouble, tangentSteps + 1> table{};
    for (int32_t i = 1; i <= tangentSteps; ++i) {
        const DoubleDouble t = DoubleDouble{1.0 * tangentSteps, 0.0} /
                               DoubleDouble{1.0 * tangentSteps * tangentSteps + i * (i - 1.0), 0.0};
        DoubleDouble power = t;
        DoubleDouble sum = t;
        for (int32_t n = 3; n < 21; n += 2) {
            power = -(power * t * t);
            sum = sum + power / DoubleDouble{static_cast<double>(n), 0.0};
        }
        const auto place = static_cast<size_t>(i);
        table[place] = table[place - 1] + sum;
    }
    return table;
}

constexpr auto arcTangentTable = arcTangents();

// The arc tangent of n/d for 0 < n <= d, with 2^-60 < n/d, neither over- nor underflowing when
// multiplied with the other: around the nearest i/64.
DoubleDouble arcTangentOf(double n, double d) {
    const double i = Nearest(n / d * tangentSteps);
    const DoubleDouble c{i / tangentSteps, 0.0};
    const DoubleDouble nPair{n, 0.0};
    const DoubleDouble dPair{d, 0.0};
    const DoubleDouble t = (nPair - c * dPair) / (dPair + c * nPair);
    return arcTangentTable[static_cast<size_t>(i)] + smallArcTangent(t);
}

// Of a point in the first quadrant, neither of whose coordinates is 0 or infinite, up to 2^-60 of
// it.
DoubleDouble angleInFirstQuadrant(double y, double x) {
    const double n = std::min(x, y);
    const double d = std::max(x, y);
    DoubleDouble angle{n / d, 0.0};
    if (angle.hi > 0x1p-60) {
        const double scale = d > 0x1p400 ? 0x1p-600 : d < 0x1p-400 ? 0x1p600 : 1.0;
        angle = arcTangentOf(n * scale, d * scale);
    }
    return y > x ? halfPi - angle : angle;
}

DoubleDouble angleOf(double y, double x) {
    if (y == 0.0) {
        return {0.0, 0.0};
    }
    if (std::isinf(x) || std::isinf(y)) {
        constexpr DoubleDouble quarterPi{0.5 * halfPi.hi, 0.5 * halfPi.lo};
        if (std::isinf(x)) {
            return std::isinf(y) ? quarterPi : DoubleDouble{0.0, 0.0};
        }
        return halfPi;
    }
    return x == 0.0 ? halfPi : angleInFirstQuadrant(y, x);
}

}  // namespace

SineCosine SinCos(double radians) {
    if (!std::isfinite(radians)) {
        return {nan, nan};
    }
    if (std::fabs(radians) < smallAngle) {
        return {radians, 1.0};
    }
    const Pair both = pairOf(radians);
    return {both.sine.hi + both.sine.lo, both.cosine.hi + both.cosine.lo};
}

double Tan(double radians) {
    if (!(std::fabs(radians) >= smallAngle)) {
        return radians;
    }
    if (std::fabs(radians) == infinity) {
        return nan;
    }
    const Pair both = pairOf(radians);
    const DoubleDouble tangent = both.sine / both.cosine;
    return tangent.hi + tangent.lo;
}

double Atan2(double y, double x) {
    if (std::isnan(x) || std::isnan(y)) {
        return nan;
    }
    DoubleDouble angle = angleOf(std::fabs(y), std::fabs(x));
    if (std::signbit(x)) {
        angle = pi - angle;
    }
    return std::copysign(angle.hi + angle.lo, y);
}

}  // namespace tonvane::elementary
