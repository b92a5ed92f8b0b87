// The part of a run's design that the refined fit has.
#include "design/CascadeResponse.h"
#include "tuning/TuningRun.h"

namespace tonvane {

void TuningRun::refine() {
    refinedFit.reset();
    if (values_.fitMethod != FitMethod::refined) {
        return;
    }
    const WantedCorrection wanted{eqDesigner.designPower, designRate, gainClampDb()};
    refinedFit = refinedFitter.fitNoWorse(wanted, iirFitter.coefficientWords);
}

void TuningRun::predictRefined() {
    const int32_t bins = responseAnalyzer.bins;
    const ComplexVector filter = CascadeSpectrum(refinedFit->sections, bins);
    responseAnalyzer.predictFilter(filter);
    const int32_t stride = (bins - 1) / (designPoints - 1);
    refinedCurve_.resize(designPoints);
    for (int32_t i = 0; i < designPoints; ++i) {
        refinedCurve_[i] = filter[static_cast<size_t>(i) * stride] * iirFitter.gain;
    }
}

std::span<const Biquad> TuningRun::fittedSections() const {
    return refinedFit ? refinedFit->sections : iirFitter.sections;
}

std::span<const int32_t> TuningRun::fittedWords() const {
    return refinedFit ? refinedFit->words : iirFitter.coefficientWords;
}

const ComplexVector& TuningRun::fittedCurve() const {
    return refinedFit ? refinedCurve_ : iirFitter.curve[0];
}

}  // namespace tonvane
