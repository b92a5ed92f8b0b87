#include "design/Smoothing.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr int32_t reduction = (responseBins - 1) / (designPoints - 1);
constexpr int32_t halfWindow = 32;

// One lobe of a raised cosine over q = -32 .. 31.
std::array<double, 2 * halfWindow> hannWindow() {
    std::array<double, 2 * halfWindow> window;
    for (int32_t q = -halfWindow; q < halfWindow; ++q) {
        const double angle = q * 0.09817477042468103;  // pi/32
        window[q + halfWindow] = (elementary::SinCos(angle).cosine + 1.0) / 2.0;
    }
    return window;
}

void reduceByEight(const ComplexVector& spectrum, DesignCurve& out) {
    static const std::array<double, 2 * halfWindow> window = hannWindow();
    for (int32_t p = 0; p < designPoints; ++p) {
        const int32_t centre = reduction * p;
        const int32_t begin = std::max(-halfWindow, -centre);
        const int32_t end = std::min(halfWindow, responseBins - centre);
        double sum = 0.0;
        double norm = 0.0;
        for (int32_t q = begin; q < end; ++q) {
            const double h = window[q + halfWindow];
            sum += elementary::Power(spectrum[centre + q]) * h;
            norm += h;
        }
        out[p] = sum / norm;
    }
}

void smoothProportionally(const DesignCurve& in, DesignCurve& out) {
    static const double quarterOctave = std::sqrt(std::sqrt(2.0)) - 1.0;
    for (int32_t i = 0; i < designPoints; ++i) {
        const int32_t halfWidth = elementary::TruncateToInt(i * quarterOctave + 0.5);
        const double edge = static_cast<double>(halfWidth + 1) * (halfWidth + 1);
        const int32_t last = std::min(halfWidth, designPoints - 1 - i);
        double sum = 0.0;
        double norm = 0.0;
        for (int32_t q = -halfWidth; q <= last; ++q) {
            const double root = edge - static_cast<double>(q) * q;
            const double v = root * root;
            sum += in[i + q] * v;
            norm += v;
        }
        out[i] = sum / norm;
    }
}

}  // namespace

void SmoothSpectrum(const ComplexVector& spectrum, DesignCurve& scratch, DesignCurve& power) {
    reduceByEight(spectrum, scratch);
    smoothProportionally(scratch, power);
}

}  // namespace tonvane
