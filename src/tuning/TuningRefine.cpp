// The part of a run's design that the refined fit has, and the design that follows a moving target.
#include <utility>

#include "design/CascadeResponse.h"
#include "elementary/Elementary.h"
#include "tuning/TuningRun.h"

namespace tonvane {

void TuningRun::refine() {
    takeRefined(values_.fitMethod == FitMethod::refined
                    ? refinedFitter.fitNoWorse(wantedCorrection(), iirFitter.coefficientWords)
                    : std::nullopt);
}

WantedCorrection TuningRun::wantedCorrection() const {
    return {eqDesigner.designPower, designRate, gainClampDb()};
}

void TuningRun::takeRefined(std::optional<RefinedFit> fit) {
    refinedFit = std::move(fit);
    refinedCurve_.clear();
    if (refinedFit) {
        responseAnalyzer.predictFilter([sections = refinedFit->sections](int32_t bins) {
            return CascadeSpectrum(sections, bins);
        });
    }
}

void TuningRun::followMove(int32_t kind) {
    takeDesignSettings();
    eqDesigner.setTarget(curves[static_cast<size_t>(currentCurve)], kind);
    if (!responseReady || !responseAnalyzer.valid) {
        return;
    }
    designTaps();
    if (values_.fitMethod == FitMethod::refined) {
        takeRefined(refinedFit ? refinedFitter.goOn(*refinedFit, wantedCorrection())
                               : refinedFitter.fit(wantedCorrection()));
    }
    if (!refinedFit) {
        fitTaps();
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
        const double drop = elementary::Exp10(eqDesigner.gainClampDb / 20.0);
        refinedCurve_ = CascadeSpectrum(refinedFit->sections, designPoints);
        for (auto& point : refinedCurve_) {
            point *= drop;
        }
    }
    return refinedCurve_;
}

}  // namespace tonvane
