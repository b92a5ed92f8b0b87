#include "design/LapackPasses.h"

#include <algorithm>

#include "design/LeastSquares.h"
#include "design/LogResponse.h"
#include "design/MinimumPhase.h"
#include "elementary/Elementary.h"

namespace tonvane {

void LapackPasses::start(int32_t sampleRate, std::span<const double> taps, int32_t order) {
    const auto tapCount = static_cast<int32_t>(taps.size());
    order_ = order;
    convolution_ = tapCount + prefilterLength - 1;
    rows_ = convolution_ + order;
    cols_ = 2 * order + 1;
    taper_ = FrequencyTaper(sampleRate);
    averagedWeight_.assign(taper_.size(), 1.0);
    matrix_.resize(static_cast<size_t>(rows_) * static_cast<size_t>(cols_));
    rhs_.resize(rows_);

    const int32_t longLength = ConvolutionLength(tapCount);
    denominatorWork_.resize(prefilterLength);
    shape_.resize(prefilterLength);
    firLong_.resize(longLength);
    shapeLong_.resize(longLength);
    filtered_.resize(longLength);
    firLong_.setSamplesPadded(taps);
    firLong_.forward();

    grid_ = UnitCirclePoints(ComparisonAngles(sampleRate));
    reference_.resize(comparisonPoints);
    current_.resize(comparisonPoints);
    logResponseAt(taps, {}, grid_, reference_);
}

void LapackPasses::run(std::span<double> numerator, std::span<double> denominator) {
    shapePrefilter(denominator);
    filterFir();
    fillMatrix();
    if (observer) {
        observer(matrix_, rhs_, rows_, cols_);
    }
    LeastSquaresSolve(matrix_, rhs_, rows_, cols_);

    const int32_t m = order_ + 1;
    std::copy_n(rhs_.begin(), m, numerator.begin());
    denominator[0] = 1.0;
    for (int32_t n = 1; n < m; ++n) {
        denominator[n] = -rhs_[m + n - 1];
    }
}

double LapackPasses::distance(std::span<const double> numerator,
                              std::span<const double> denominator) {
    logResponseAt(numerator, denominator, grid_, current_);
    double sum = 0.0;
    for (size_t i = 0; i < current_.size(); ++i) {
        const double difference = current_[i] - reference_[i];
        sum += difference * difference;
    }
    return sum;
}

// The prefilter: minimum phase, with the averaged 1/|A| times the taper as its magnitude. The
// average damps the oscillation of the plain iteration.
void LapackPasses::shapePrefilter(std::span<const double> denominator) {
    denominatorWork_.setSamplesPadded(denominator);
    denominatorWork_.forward();
    for (int32_t k = 0; k < shape_.bins; ++k) {
        double& weight = averagedWeight_[k];
        const double inverse = 1.0 / elementary::Magnitude(denominatorWork_.spectrum[k]);
        weight = 0.75 * weight + 0.25 * inverse;
        shape_.spectrum[k] = {elementary::Log(taper_[k] * weight), 0.0};
    }
    MinimumPhaseFromLog(shape_, denominatorWork_);
}

void LapackPasses::filterFir() {
    shapeLong_.setSamplesPadded(shape_.time());
    shapeLong_.forward();
    for (int32_t k = 0; k < filtered_.bins; ++k) {
        filtered_.spectrum[k] = elementary::Product(shapeLong_.spectrum[k], firLong_.spectrum[k]);
    }
    filtered_.inverse();
    const double scale = 1.0 / filtered_.length;
    for (double& sample : filtered_.time()) {
        sample *= scale;
    }
}

// The equation A*y = B*p of the prefiltered FIR y and the prefilter p: delayed copies of p in the
// numerator's columns, of y in the denominator's. The last rows hold the tails, so that the model
// is also asked to fall silent with the signal.
void LapackPasses::fillMatrix() {
    const int32_t m = order_ + 1;
    const std::span<const double> p = shape_.time();
    const std::span<const double> y = filtered_.samples.first(convolution_);
    std::ranges::fill(matrix_, 0.0);
    const auto column = [&](int32_t index) {
        return matrix_.begin() + static_cast<std::ptrdiff_t>(index) * rows_;
    };
    for (int32_t j = 0; j < m; ++j) {
        std::ranges::copy(p, column(j) + j);
    }
    for (int32_t i = 1; i < m; ++i) {
        std::ranges::copy(y, column(m + i - 1) + i);
    }
    std::ranges::fill(rhs_, 0.0);
    std::ranges::copy(y, rhs_.begin());
}

}  // namespace tonvane
