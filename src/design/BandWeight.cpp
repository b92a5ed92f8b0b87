#include "design/BandWeight.h"

#include <algorithm>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

double loudnessWeight(double f) {
    const double bass = 140.0 / f + 1.0;
    const double treble = f / 440.0 + 1.0;
    const double slope = 440.0 / f + 1.0;
    return 1.0 / (bass * treble * (slope * slope));
}

}  // namespace

void BandWeight::build(int32_t n, double fs, double lowHz, double highHz) {
    binCount = n / 2 + 1;
    const double top = highHz == 0.0 ? fs / 2.0 : highHz;
    firstBin = std::clamp(elementary::TruncateToInt(lowHz * n / fs), 0, binCount);
    endBin = std::clamp(elementary::TruncateToInt(top * n / fs), 0, binCount);

    weights.ensure(binCount);
    std::ranges::fill(weights.first(binCount), 0.0);
    weightSum = 0.0;
    for (int32_t k = firstBin; k < endBin; ++k) {
        weights[k] = loudnessWeight(k * fs / n);
        weightSum += weights[k];
    }
}

double BandWeight::energy(const ComplexVector& x) const {
    double sum = 0.0;
    for (int32_t k = firstBin; k < endBin; ++k) {
        sum += elementary::Power(x[k]) * weights[k];
    }
    return sum / weightSum;
}

double BandWeight::energyOfProduct(const ComplexVector& x, const ComplexVector& y) const {
    double sum = 0.0;
    for (int32_t k = firstBin; k < endBin; ++k) {
        sum += elementary::Power(elementary::Product(x[k], y[k])) * weights[k];
    }
    return sum / weightSum;
}

}  // namespace tonvane
