#include "graph/GraphAxis.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/core.h>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr double pixelsPerLabel = 80.0;
constexpr double minorTickShare = 0.0625;  // of a pixel: steps are rated in sixteenths
constexpr char prefixes[] = "fpnum kMGT";  // 1e-15 upward in steps of 1000; none is a blank
constexpr int32_t noPrefix = 5;
constexpr double smallestLabel = 1e-15;
// What a digit may miss after a logarithm and a power.
constexpr double digitTolerance = 1e-9;

// floor(log10(x)) for a positive x, exact at the powers of ten.
int32_t decadeOf(double x) {
    const double estimate = std::clamp(std::floor(elementary::Log10(x)), -400.0, 400.0);
    auto exponent = elementary::TruncateToInt(estimate);
    if (x >= PowerOfTen(exponent + 1)) {
        ++exponent;
    } else if (x < PowerOfTen(exponent)) {
        --exponent;
    }
    return exponent;
}

int32_t floorDivide(int32_t a, int32_t b) {
    return a >= 0 ? a / b : -((b - 1 - a) / b);
}

}  // namespace

double PowerOfTen(int32_t exponent) {
    double power = 1.0;
    for (int32_t i = std::min(std::abs(exponent), 308); i > 0; --i) {
        power *= 10.0;
    }
    return exponent < 0 ? 1.0 / power : power;
}

int32_t DecadeDigit(double log10OfValue) {
    const double digit = elementary::Exp10(log10OfValue - std::floor(log10OfValue));
    return (elementary::TruncateToInt(digit + digitTolerance) + 8) % 9 + 1;
}

void CGraphAxis::SetRange(double lowest, double highest) {
    low = scale == logScale ? elementary::Log10(lowest) : lowest;
    high = scale == logScale ? elementary::Log10(highest) : highest;
    if (scale == logScale) {
        makeLogTicks();
    } else {
        makeLinearTicks();
    }
}

void CGraphAxis::makeLinearTicks() {
    tickLow = low;
    tickHigh = high;
    tickStep = 0.0;
    labelEvery = 0;
    const double range = (high - low) / pixels * (pixelsPerLabel * unit);
    if (!(range > 0.0) || !std::isfinite(range)) {
        return;
    }
    const double decade = PowerOfTen(decadeOf(range));
    const double m = range / decade;
    const double base = m > 8.0 ? 10.0 : m > 4.0 ? 5.0 : m > 1.6 ? 2.0 : 1.0;
    const double step = base * decade;
    tickLow = std::floor(low / step) * step;
    tickHigh = std::ceil(high / step) * step;
    const double sixteenths = step / (tickHigh - tickLow) * pixels / unit * minorTickShare;
    labelEvery = sixteenths > 4.0 ? 5 : sixteenths > 1.6 ? 2 : 1;
    tickStep = step / labelEvery;
}

// The ends widen to whole digits of their decades.
void CGraphAxis::makeLogTicks() {
    const double firstDecade = std::floor(low);
    const double lastDecade = std::floor(high);
    const double firstDigit = std::floor(elementary::Exp10(low - firstDecade) + digitTolerance);
    const double lastDigit = std::ceil(elementary::Exp10(high - lastDecade) - digitTolerance);
    tickLow = firstDecade + elementary::Log10(firstDigit);
    tickHigh = lastDecade + elementary::Log10(lastDigit);
    labelEvery = 0;
    tickStep = 0.0;
}

void CGraphAxis::SetFixedRange(double lowest, double highest, int32_t divisions,
                               int32_t subdivisions) {
    const bool logarithmic = scale == logScale;
    low = tickLow = logarithmic ? elementary::Log10(lowest) : lowest;
    high = tickHigh = logarithmic ? elementary::Log10(highest) : highest;
    if (!logarithmic) {
        labelEvery = subdivisions;
        tickStep = (highest - lowest) / (static_cast<double>(divisions) * subdivisions);
    }
}

int32_t CGraphAxis::ToPixel(double value) const {
    const double position = (value - spanLow()) / (spanHigh() - spanLow()) * pixels;
    if (std::isnan(position)) {
        return -farthest;
    }
    return std::clamp(elementary::TruncateToInt(position), -farthest, farthest);
}

std::string CGraphAxis::FormatLabel(double value) const {
    if (std::fabs(value) < smallestLabel) {
        return "0 ";
    }
    const int32_t decade = decadeOf(std::fabs(value));
    if (labelStyle == 0) {
        const int32_t prefix = floorDivide(std::clamp(decade, -15, 14), 3);
        const double scaled = std::floor(value / PowerOfTen(3 * prefix) + 0.5);
        return std::to_string(elementary::TruncateToInt(scaled)) + prefixes[prefix + noPrefix];
    }
    const int32_t limited = std::clamp(decade, -16, 13);
    const int32_t prefix = floorDivide(limited + 1, 3);
    const int decimals = limited - 3 * prefix == 1 ? 1 : 2;
    return fmt::format("{:.{}f}{}", value / PowerOfTen(3 * prefix), decimals,
                       prefixes[prefix + noPrefix]);
}

}  // namespace tonvane
