#include "design/Smoothing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>
#include <vector>

#include "elementary/DoublePair.h"
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
constexpr int32_t sideBySide = 8;

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
    for (; p + sideBySide + endPoints < designPoints; p += sideBySide) {
        const double* const x = &power[reduction * p - halfWindow];
        std::array<double, sideBySide> sums{};
        for (int32_t q = 0; q < 2 * halfWindow; ++q) {
            for (int32_t k = 0; k < sideBySide; ++k) {
                sums[k] += x[q + reduction * k] * window[q];
            }
        }
        for (int32_t k = 0; k < sideBySide; ++k) {
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

double proportionalWeight(int32_t halfWidth, int32_t q) {
    const double edge = static_cast<double>(halfWidth + 1) * (halfWidth + 1);
    const double root = edge - static_cast<double>(q) * q;
    return root * root;
}

// The points whose windows are alike, and the sums of their weights, cut at the end of the band.
struct EqualWindows {
    static constexpr int32_t most = 6;  // points; half the width grows by 0.19 a point

    int32_t first = 0;
    int32_t halfWidth = 0;
    int32_t count = 0;
    std::array<double, most> norms{};
};

std::vector<EqualWindows> proportionalWindows() {
    std::vector<EqualWindows> windows;
    for (int32_t i = 0; i < designPoints; ++i) {
        const int32_t halfWidth = halfWidthAt(i);
        if (windows.empty() || windows.back().halfWidth != halfWidth) {
            windows.push_back({i, halfWidth, 0, {}});
        }
        EqualWindows& window = windows.back();
        double& norm = window.norms[window.count++];
        const int32_t last = std::min(halfWidth, designPoints - 1 - i);
        for (int32_t q = -halfWidth; q <= last; ++q) {
            norm += proportionalWeight(halfWidth, q);
        }
    }
    return windows;
}

void smoothProportionally(const DesignCurve& in, DesignCurve& out) {
    using elementary::DoublePair;
    static const std::vector<EqualWindows> windows = proportionalWindows();
    constexpr int32_t pairs = EqualWindows::most / 2;
    constexpr int32_t margin = 400;  // silence behind the band, more than half the widest window
    std::array<double, designPoints + margin> padded{};
    std::ranges::copy(in, padded.begin());
    for (const EqualWindows& window : windows) {
        std::array<DoublePair, pairs> sums{};
        for (int32_t q = -window.halfWidth; q <= window.halfWidth; ++q) {
            const double weight = proportionalWeight(window.halfWidth, q);
            const double* const x = &padded[window.first + q];
            for (int32_t k = 0; k < pairs; ++k) {
                sums[k] += elementary::LoadDoubles(x + 2 * k) * weight;
            }
        }
        for (int32_t k = 0; k < window.count; ++k) {
            out[window.first + k] = sums[k / 2][k % 2] / window.norms[k];
        }
    }
}

}  // namespace

void SmoothSpectrum(const ComplexVector& spectrum, DesignCurve& scratch, DesignCurve& power) {
    reduceByEight(spectrum, scratch);
    smoothProportionally(scratch, power);
}

}  // namespace tonvane
