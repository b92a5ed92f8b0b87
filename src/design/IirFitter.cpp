#include "design/IirFitter.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "design/BiquadSections.h"
#include "design/LeastSquares.h"
#include "design/LogResponse.h"
#include "design/MinimumPhase.h"
#include "design/PolynomialRoots.h"
#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr int32_t shapeLength = 1024;
constexpr int32_t shapeBins = shapeLength / 2 + 1;
constexpr double lowestHz = 50.0;
constexpr double frequencySpan = 300.0;  // 50 Hz to 15 kHz
constexpr double twoPi = 6.283185307179586;

// The angles of the comparison grid, as exponents of z^-1.
std::vector<double> comparisonAngles(int32_t sampleRate) {
    const double ratio = elementary::Pow(frequencySpan, 1.0 / (IirFitter::comparisonPoints - 1));
    std::vector<double> angles(IirFitter::comparisonPoints);
    double x = lowestHz / sampleRate;
    for (double& angle : angles) {
        angle = -twoPi * x;
        x *= ratio;
    }
    return angles;
}

// Weight on low frequencies: 1 up to 100 Hz, falling as 1/frequency to 10 kHz, flat from there.
std::array<double, shapeBins> frequencyTaper(int32_t sampleRate) {
    const int32_t start = 100 * shapeLength / sampleRate + 1;
    const int32_t end = 10000 * shapeLength / sampleRate + 1;
    const double floor = static_cast<double>(start) / end;
    const double ratio = elementary::Pow(floor, 1.0 / (end - start));
    std::array<double, shapeBins> taper;
    double g = 1.0;
    for (int32_t k = 0; k < shapeBins; ++k) {
        if (k >= start) {
            g *= ratio;
        }
        g = std::max(g, floor);
        taper[k] = g;
    }
    return taper;
}

double squaredDistance(std::span<const double> x, std::span<const double> y) {
    double sum = 0.0;
    for (size_t i = 0; i < x.size(); ++i) {
        const double difference = x[i] - y[i];
        sum += difference * difference;
    }
    return sum;
}

}  // namespace

struct IirFitter::Workspace {
    Workspace(int32_t sampleRate, int32_t tapCount, int32_t order)
        : coefficients(order + 1),
          convolution(tapCount + shapeLength - 1),
          rows(convolution + order),
          cols(2 * order + 1),
          taper(frequencyTaper(sampleRate)),
          matrix(static_cast<size_t>(rows) * cols),
          rhs(rows) {
        averagedWeight.fill(1.0);
    }

    int32_t coefficients;  // M, of each polynomial
    int32_t convolution;   // samples of the prefilter's convolution with the taps
    int32_t rows;
    int32_t cols;
    std::array<double, shapeBins> taper;
    std::array<double, shapeBins> averagedWeight;  // running average of 1/|A| over the passes
    std::vector<double> matrix;                    // column by column
    std::vector<double> rhs;                       // and the solution after it
};

void IirFitter::configure(int32_t rate, std::span<const double> firTaps, int32_t count,
                          int32_t curvePoints, double gainClampDb) {
    for (int i = 0; i < 2; ++i) {
        numerator[i].clear();
        denominator[i].clear();
        curve[i].resize(curvePoints / 2 + 1);
    }
    sections.clear();
    coefficientWords.clear();
    sampleRate = rate;
    sectionCount = count;
    tapCount = static_cast<int32_t>(firTaps.size());
    gain = elementary::Exp10(gainClampDb * 0.05);
    taps.ensure(tapCount);
    std::ranges::copy(firTaps, taps.data.get());
}

std::array<double, IirFitter::comparisonPoints> IirFitter::comparisonFrequencies() {
    std::array<double, comparisonPoints> hertz;
    const std::vector<double> angles = comparisonAngles(1);
    std::ranges::transform(angles, hertz.begin(), [](double angle) { return angle / -twoPi; });
    return hertz;
}

void IirFitter::fit() {
    const int32_t order = 2 * sectionCount;
    Workspace work(sampleRate, tapCount, order);
    for (int i = 0; i < 2; ++i) {
        numerator[i].assign(work.coefficients, 0.0);
        denominator[i].assign(work.coefficients, 0.0);
    }
    denominator[1][0] = 1.0;

    const auto longLength =
        static_cast<int32_t>(std::bit_ceil(static_cast<uint32_t>(work.convolution)));
    denominatorWork_.resize(shapeLength);
    shape_.resize(shapeLength);
    firLong_.resize(longLength);
    shapeLong_.resize(longLength);
    filtered_.resize(longLength);
    firLong_.setSamplesPadded(taps.first(tapCount));
    firLong_.forward();

    const ComplexVector grid = UnitCirclePoints(comparisonAngles(sampleRate));
    std::vector<double> reference(comparisonPoints);
    std::vector<double> current(comparisonPoints);
    logResponseAt(taps.first(tapCount), {}, grid, reference);

    bestDistance = 1e100;
    bestPass = -1;
    for (int32_t pass = 0; pass < passes; ++pass) {
        shapePrefilter(work);
        filterFir(work);
        solvePass(work);
        logResponseAt(numerator[1], denominator[1], grid, current);
        distances[pass] = squaredDistance(current, reference);
        if (distances[pass] <= bestDistance) {
            bestDistance = distances[pass];
            bestPass = pass;
            numerator[0] = numerator[1];
            denominator[0] = denominator[1];
        }
    }

    magnitudeCurve(numerator[0], denominator[0], curve[0]);
    magnitudeCurve(numerator[1], denominator[1], curve[1]);
    encodeSections();
}

// The prefilter: minimum phase, with the averaged 1/|A| times the taper as its magnitude. The
// average damps the oscillation of the plain iteration.
void IirFitter::shapePrefilter(Workspace& work) {
    denominatorWork_.setSamplesPadded(denominator[1]);
    denominatorWork_.forward();
    for (int32_t k = 0; k < shapeBins; ++k) {
        double& weight = work.averagedWeight[k];
        const double inverse = 1.0 / elementary::Magnitude(denominatorWork_.spectrum[k]);
        weight = 0.75 * weight + 0.25 * inverse;
        shape_.spectrum[k] = {elementary::Log(work.taper[k] * weight), 0.0};
    }
    MinimumPhaseFromLog(shape_, denominatorWork_);
}

void IirFitter::filterFir(Workspace& work) {
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
    std::ranges::fill(work.rhs, 0.0);
    std::copy_n(filtered_.samples.data.get(), work.convolution, work.rhs.begin());
}

// The equation A*y = B*p of the prefiltered FIR y and the prefilter p: delayed copies of p in the
// numerator's columns, of y in the denominator's. The last rows hold the tails, so that the model
// is also asked to fall silent with the signal.
void IirFitter::solvePass(Workspace& work) {
    const int32_t m = work.coefficients;
    const std::span<const double> p = shape_.time();
    const std::span<const double> y = filtered_.samples.first(work.convolution);
    std::ranges::fill(work.matrix, 0.0);
    const auto column = [&](int32_t index) {
        return work.matrix.begin() + static_cast<std::ptrdiff_t>(index) * work.rows;
    };
    for (int32_t j = 0; j < m; ++j) {
        std::ranges::copy(p, column(j) + j);
    }
    for (int32_t i = 1; i < m; ++i) {
        std::ranges::copy(y, column(m + i - 1) + i);
    }
    if (equationObserver) {
        equationObserver(work.matrix, work.rhs, work.rows, work.cols);
    }
    LeastSquaresSolve(work.matrix, work.rhs, work.rows, work.cols);

    std::copy_n(work.rhs.begin(), m, numerator[1].begin());
    denominator[1][0] = 1.0;
    for (int32_t n = 1; n < m; ++n) {
        denominator[1][n] = -work.rhs[m + n - 1];
    }
}

void IirFitter::encodeSections() {
    const int32_t order = 2 * sectionCount;
    std::vector<double> re(order);
    std::vector<double> im(order);
    const auto sectionsOf = [&](const std::vector<double>& polynomial) {
        std::vector<double> coefficients(3 * static_cast<size_t>(sectionCount));
        PolynomialRoots(polynomial, re, im, order, true);
        RootsToBiquads(re, im, coefficients, sectionCount, rootTolerance);
        return coefficients;
    };
    const std::vector<double> zeros = sectionsOf(numerator[0]);
    const std::vector<double> poles = sectionsOf(denominator[0]);

    // Each section carries its share of the gain; the level drop of the gain clamp stays out.
    const double share = elementary::Pow(numerator[0][0] / gain, 1.0 / sectionCount);
    sections.clear();
    for (size_t k = 0; k < zeros.size(); k += 3) {
        sections.push_back({share * zeros[k], share * zeros[k + 1], share * zeros[k + 2],
                            poles[k + 1], poles[k + 2]});
    }
    coefficientWords = EncodeBiquads(sections);
}

}  // namespace tonvane
