#include "analysis/Polarity.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr double bandLowHz = 50.0;
constexpr double bandHighHz = 2000.0;

// The index at which the gate opens: behind the last zero crossing ahead of the onset.
int32_t gateOpening(std::span<const double> y, int32_t first, double sampleRate) {
    const auto n = static_cast<int32_t>(y.size());
    const int32_t reach = std::clamp(elementary::TruncateToInt(sampleRate / bandHighHz), 0, n);
    const int32_t limit = std::max(first - reach, 0);
    for (int32_t c = std::min(first, n - 1) - 1; c >= limit; --c) {
        if (y[c + 1] * y[c] < 0.0) {
            return c + 1;
        }
    }
    return limit;
}

}  // namespace

int32_t FindPolarity(const SpectrumBuffer& response, double sampleRate, int32_t first,
                     SpectrumBuffer& probe) {
    const int32_t n = response.length;
    probe.resize(n);
    const auto lowBin = elementary::TruncateToInt(n * (bandLowHz / sampleRate));
    const auto highBin = elementary::TruncateToInt(n * (bandHighHz / sampleRate));
    for (int32_t i = 0; i < probe.bins; ++i) {
        const bool inBand = i >= lowBin && i <= highBin;
        probe.spectrum[i] = inBand ? response.spectrum[i] / static_cast<double>(n) : 0.0;
    }
    probe.inverse();

    const std::span<double> y = probe.time();
    const int32_t opening = std::min(gateOpening(y, first, sampleRate), n);
    std::fill(y.begin(), y.begin() + opening, 0.0);

    const double decayPerSample = std::numbers::ln2 * -bandHighHz / sampleRate * 1.5;
    double extreme = 0.0;
    for (int32_t i = opening; i < n; ++i) {
        const int32_t m = i - opening;
        y[i] *= elementary::Exp(m * decayPerSample) * (sampleRate / bandHighHz) * 0.25;
        if (std::fabs(y[i]) > std::fabs(extreme)) {
            extreme = y[i];
        }
    }
    return extreme > 0.0 ? 1 : -1;
}

}  // namespace tonvane
