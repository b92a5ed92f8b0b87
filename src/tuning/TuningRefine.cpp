// The part of a run's design that the refined fit has.
#include "design/CascadeResponse.h"
#include "tuning/TuningRun.h"

namespace tonvane {

void TuningRun::refine() {
    refinedFit.reset();
    refinedCurve_.clear();
    if (values_.fitMethod != FitMethod::refined) {
        return;
    }
    const WantedCorrection wanted{eqDesigner.designPower, designRate, gainClampDb()};
    refinedFit = refinedFitter.fitNoWorse(wanted, iirFitter.coefficientWords);
    if (refinedFit) {
        responseAnalyzer.predictFilter([sections = refinedFit->sections](int32_t bins) {
            return CascadeSpectrum(sections, bins);
        });
    }
}

std::span<const Biquad> TuningRun::fittedSections() const {
    return refinedFit ? refinedFit->sections : iirFitter.sections;
}

std::span<const int32_t> TuningRun::fittedWords() const {
    return refinedFit ? refinedFit->words : iirFitter.coefficientWords;
}

const ComplexVector& TuningRun::fittedCurve() const {
    if (!refinedFit) {
        return iirFitter.curve(0);
    }
    if (refinedCurve_.empty()) {
        refinedCurve_ = CascadeSpectrum(refinedFit->sections, designPoints);
        for (auto& point : refinedCurve_) {
            point *= iirFitter.gain;
        }
    }
    return refinedCurve_;
}

}  // namespace tonvane
