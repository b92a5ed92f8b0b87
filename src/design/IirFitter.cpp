#include "design/IirFitter.h"

#include <algorithm>

#include "design/BiquadSections.h"
#include "design/LogResponse.h"
#include "design/PolynomialRoots.h"
#include "elementary/Elementary.h"

namespace tonvane {

void IirFitter::configure(int32_t rate, std::span<const double> firTaps, int32_t count,
                          int32_t curvePoints, double gainClampDb) {
    for (int i = 0; i < 2; ++i) {
        numerator[i].clear();
        denominator[i].clear();
        curve_[i].assign(curvePoints / 2 + 1, 0.0);
        hasCurve_[i] = true;
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
    constexpr double twoPi = 6.283185307179586;
    std::array<double, comparisonPoints> hertz;
    const std::vector<double> angles = ComparisonAngles(1);
    std::ranges::transform(angles, hertz.begin(), [](double angle) { return angle / -twoPi; });
    return hertz;
}

void IirFitter::fit() {
    const int32_t order = 2 * sectionCount;
    for (int i = 0; i < 2; ++i) {
        numerator[i].assign(order + 1, 0.0);
        denominator[i].assign(order + 1, 0.0);
    }
    denominator[1][0] = 1.0;
    if (!passes_ || solverOfPasses_ != solver) {
        passes_ = MakeFitPasses(solver);
        solverOfPasses_ = solver;
    }
    passes_->start(sampleRate, taps.first(tapCount), order);

    bestDistance = 1e100;
    bestPass = -1;
    for (int32_t pass = 0; pass < passes; ++pass) {
        passes_->run(numerator[1], denominator[1]);
        distances[pass] = passes_->distance(numerator[1], denominator[1]);
        if (distances[pass] <= bestDistance) {
            bestDistance = distances[pass];
            bestPass = pass;
            numerator[0] = numerator[1];
            denominator[0] = denominator[1];
        }
    }
    hasCurve_.fill(false);
    encodeSections();
}

const ComplexVector& IirFitter::curve(int32_t i) const {
    if (!hasCurve_[i]) {
        magnitudeCurve(numerator[i], denominator[i], curve_[i]);
        hasCurve_[i] = true;
    }
    return curve_[i];
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
