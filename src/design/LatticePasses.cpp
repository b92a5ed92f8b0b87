#include "design/LatticePasses.h"

#include <algorithm>
#include <cmath>

#include "design/LogResponse.h"
#include "design/MinimumPhase.h"
#include "elementary/Elementary.h"
#include "elementary/FastFunctions.h"

namespace tonvane {

void LatticePasses::start(int32_t sampleRate, std::span<const double> taps, int32_t order) {
    const auto tapCount = static_cast<int32_t>(taps.size());
    takeRate(sampleRate);
    convolution_ = tapCount + prefilterLength - 1;
    averagedWeight_.assign(taper_.size(), 1.0);
    logs_.resize(taper_.size());
    solver_.resize(order, convolution_);

    const int32_t longLength = ConvolutionLength(tapCount);
    work_.resize(prefilterLength);
    shape_.resize(prefilterLength);
    firLong_.resize(longLength);
    shapeLong_.resize(longLength);
    filtered_.resize(longLength);
    // Without its first tap: what that one does is a multiple of the prefilter.
    firstTap_ = taps[0];
    firLong_.setSamplesPadded(taps);
    firLong_.samples[0] = 0.0;
    firLong_.forward();

    for (std::vector<double>* powers : {&reference_, &above_, &below_}) {
        powers->resize(comparisonPoints);
    }
    grid_.power(taps, reference_);
}

void LatticePasses::takeRate(int32_t sampleRate) {
    if (sampleRate_ != sampleRate) {
        sampleRate_ = sampleRate;
        taper_ = FrequencyTaper(sampleRate);
        grid_.build(ComparisonAngles(sampleRate));
    }
}

void LatticePasses::run(std::span<double> numerator, std::span<double> denominator) {
    shapePrefilter(denominator);
    filterFir();
    solver_.solve(shape_.time(), filtered_.samples.first(convolution_), firstTap_, numerator,
                  denominator);
}

double LatticePasses::distance(std::span<const double> numerator,
                               std::span<const double> denominator) {
    constexpr double halfDecimalLogOfE = 0.21714724095162591;
    grid_.power(numerator, above_);
    grid_.power(denominator, below_);
    for (size_t i = 0; i < above_.size(); ++i) {
        above_[i] /= below_[i] * reference_[i];
    }
    elementary::FastLog(above_);
    double sum = 0.0;
    for (const double log : above_) {
        const double difference = log * halfDecimalLogOfE;
        sum += difference * difference;
    }
    return sum;
}

// The prefilter: minimum phase, with the averaged 1/|A| times the taper as its magnitude. The
// average damps the oscillation of the plain iteration.
void LatticePasses::shapePrefilter(std::span<const double> denominator) {
    work_.setSamplesPadded(denominator);
    work_.forward();
    for (size_t k = 0; k < logs_.size(); ++k) {
        double& weight = averagedWeight_[k];
        weight = 0.75 * weight + 0.25 / std::sqrt(elementary::Power(work_.spectrum[k]));
        logs_[k] = taper_[k] * weight;
    }
    elementary::FastLog(logs_);
    shape_.setSpectrumReal(logs_);
    FastMinimumPhaseFromLog(shape_, work_);
}

void LatticePasses::filterFir() {
    shapeLong_.setSamplesPadded(shape_.time());
    shapeLong_.forward();
    const double scale = 1.0 / filtered_.length;
    for (int32_t k = 0; k < filtered_.bins; ++k) {
        filtered_.spectrum[k] =
            elementary::Product(shapeLong_.spectrum[k], firLong_.spectrum[k]) * scale;
    }
    filtered_.inverse();
}

}  // namespace tonvane
