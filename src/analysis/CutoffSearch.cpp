#include "analysis/CutoffSearch.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr int32_t cutoffWithoutWinner = 47;  // Hz

double power24(double x) {
    const double x2 = x * x;
    const double x4 = x2 * x2;
    const double x8 = x4 * x4;
    return x8 * x8 * x8;
}

struct Band {
    int32_t begin;  // first bin counted
    int32_t end;    // one past the last
};

// The score of the corner at bin kk: the energy of the power spectrum's projection on the upper
// template, less half of that on the lower one.
double scoreCorner(double kk, Band band, std::span<const double> power,
                   std::span<const double> bassWeight) {
    double highNorm = 0.0;
    double lowNorm = 0.0;
    double highProjection = 0.0;
    double lowProjection = 0.0;
    for (int32_t j = band.begin; j < band.end; ++j) {
        const double t = kk / j;
        const double s = j / kk;
        const double u = 4.0 * kk / j;
        const double high = 1.0 / ((1.0 + power24(t)) * (1.0 + u));
        const double low = 1.0 / ((1.0 + power24(s)) * (1.0 + u));
        const double weight = bassWeight[j] / ((1.0 + std::sqrt(s)) * (1.0 + std::sqrt(t)));
        highNorm += high * high * weight;
        lowNorm += low * low * weight;
        highProjection += power[j] * high * weight;
        lowProjection += power[j] * low * weight;
    }
    return highProjection * highProjection / highNorm -
           0.5 * lowProjection * lowProjection / lowNorm;
}

}  // namespace

int32_t SearchCutoff(const SpectrumBuffer& response, double sampleRate, std::span<double> curve) {
    const int32_t n = response.length;
    const auto binAt = [&](double hertz) {
        return std::clamp(elementary::TruncateToInt(hertz * n / sampleRate), 0, response.bins);
    };
    const Band band{binAt(20.0), binAt(800.0)};
    const int32_t firstCorner = binAt(40.0);
    const int32_t endCorner = binAt(400.0);

    std::vector<double> power(static_cast<size_t>(band.end));
    std::vector<double> bassWeight(static_cast<size_t>(band.end));
    for (int32_t i = 0; i < band.end; ++i) {
        power[i] = elementary::Power(response.spectrum[i]);
        const double ratio = static_cast<double>(i) / firstCorner;
        bassWeight[i] = 1.0 / (ratio * ratio + 1.0);
    }

    std::fill(curve.begin(), curve.end(), 0.0);
    int32_t cutoffHz = cutoffWithoutWinner;
    double best = -1e100;
    double lowest = 0.0;
    for (int32_t k = firstCorner; k < endCorner; ++k) {
        const double score = scoreCorner(k / 1.2, band, power, bassWeight);
        curve[k] = score;
        if (score > best) {
            best = score;
            cutoffHz = elementary::TruncateToInt(k * sampleRate / n);
        }
        lowest = score <= lowest ? score : lowest;
    }

    for (int32_t i = band.begin; i < endCorner; ++i) {
        const double share = (curve[i] - lowest) / (best - lowest);
        curve[i] = elementary::Exp10((share - 1.0) * 40.0 / 20.0);
    }
    return cutoffHz;
}

}  // namespace tonvane
