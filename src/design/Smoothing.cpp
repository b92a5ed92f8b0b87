#include "design/Smoothing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>

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

// Points side by side, whose sums do not wait for each other. Each sum has the order of one alone.
constexpr int32_t lanes = 8;

// One point with its window cut at the ends of the band.
double reducedAtAnEnd(std::span<const double> power, std::span<const double> window, int32_t p) {
    const int32_t centre = reduction * p;
    const int32_t begin = std::max(-halfWindow, -centre);
    const int32_t end = std::min(halfWindow, responseBins - centre);
    double sum = 0.0;
    double norm = 0.0;
    for (int32_t q = begin; q < end; ++q) {
        const double h = window[q + halfWindow];
        sum += power[centre + q] * h;
        norm += h;
    }
    return sum / norm;
}

void reduceByEight(const ComplexVector& spectrum, DesignCurve& out) {
    static const std::array<double, 2 * halfWindow> window = hannWindow();
    static const double norm = std::accumulate(window.begin(), window.end(), 0.0);
    constexpr int32_t endPoints = halfWindow / reduction;
    std::array<double, responseBins> power;
    std::ranges::transform(spectrum, power.begin(), elementary::Power);

    int32_t p = 0;
    for (; p < endPoints; ++p) {
        out[p] = reducedAtAnEnd(power, window, p);
    }
    for (; p + lanes + endPoints < designPoints; p += lanes) {
        const double* const x = &power[reduction * p - halfWindow];
        std::array<double, lanes> sums{};
        for (int32_t q = 0; q < 2 * halfWindow; ++q) {
            for (int32_t k = 0; k < lanes; ++k) {
                sums[k] += x[q + reduction * k] * window[q];
            }
        }
        for (int32_t k = 0; k < lanes; ++k) {
            out[p + k] = sums[k] / norm;
        }
    }
    for (; p < designPoints; ++p) {
        out[p] = reducedAtAnEnd(power, window, p);
    }
}

// Half the width of the window at a point, a quarter of an octave.
int32_t halfWidthAt(int32_t i) {
    static const double quarterOctave = std::sqrt(std::sqrt(2.0)) - 1.0;
    return elementary::TruncateToInt(i * quarterOctave + 0.5);
}

// The square of the distance at which the window at a point ends.
double edgeAt(int32_t i) {
    const double edge = halfWidthAt(i) + 1.0;
    return edge * edge;
}

// The sums of the windows' weights.
DesignCurve proportionalNorms() {
    DesignCurve norms{};
    for (int32_t i = 0; i < designPoints; ++i) {
        const int32_t halfWidth = halfWidthAt(i);
        const int32_t last = std::min(halfWidth, designPoints - 1 - i);
        for (int32_t q = -halfWidth; q <= last; ++q) {
            const double root = edgeAt(i) - static_cast<double>(q) * q;
            norms[i] += root * root;
        }
    }
    return norms;
}

// What lies outside a window has weight 0, what lies outside the curve is 0.
void smoothProportionally(const DesignCurve& in, DesignCurve& out) {
    static const DesignCurve norms = proportionalNorms();
    constexpr int32_t margin = 400;  // at least the widest window's half
    std::array<double, designPoints + 2 * margin> padded{};
    std::ranges::copy(in, padded.begin() + margin);
    for (int32_t i = 0; i < designPoints; i += lanes) {
        const int32_t count = std::min(lanes, designPoints - i);
        std::array<double, lanes> edges;
        std::array<double, lanes> sums{};
        for (int32_t k = 0; k < lanes; ++k) {
            edges[k] = edgeAt(std::min(i + k, designPoints - 1));
        }
        const int32_t widest = halfWidthAt(i + count - 1);
        for (int32_t q = -widest; q <= widest; ++q) {
            const double square = static_cast<double>(q) * q;
            const double* const x = &padded[margin + i + q];
            for (int32_t k = 0; k < lanes; ++k) {
                const double root = std::max(edges[k] - square, 0.0);
                sums[k] += x[k] * (root * root);
            }
        }
        for (int32_t k = 0; k < count; ++k) {
            out[i + k] = sums[k] / norms[i + k];
        }
    }
}

}  // namespace

void SmoothSpectrum(const ComplexVector& spectrum, DesignCurve& scratch, DesignCurve& power) {
    reduceByEight(spectrum, scratch);
    smoothProportionally(scratch, power);
}

}  // namespace tonvane
