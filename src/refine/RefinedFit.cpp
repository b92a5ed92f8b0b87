#include "refine/RefinedFit.h"

#include <algorithm>
#include <cmath>

#include "amplifier/FixedPoint.h"
#include "design/CascadeResponse.h"
#include "elementary/Elementary.h"
#include "refine/BoundedWords.h"
#include "refine/PairSearch.h"
#include "refine/SectionPower.h"

namespace tonvane {

namespace {

constexpr int32_t lowestSampleRate = 1000;
constexpr int32_t searchPoints = 65;
constexpr int32_t polishPoints = 257;
constexpr double silenceDb = -300.0;
constexpr double flatDb = 0.001;
constexpr double outermostPole = 0.99995;

constexpr int32_t settledSteps = 20;
constexpr double settledTolerance = 1e-5;
constexpr int32_t polishSteps = 40;
constexpr int32_t stubbornSteps = 300;  // where the first do not suffice
constexpr double polishTolerance = 1e-6;
constexpr int32_t mostBoundRounds = 3;
constexpr int32_t boundSteps = 15;
constexpr double boundExcessDb = 0.005;

double levelOf(double power) {
    return power > 0.0 ? std::max(decibelsPerNeper * elementary::Log(power), silenceDb) : silenceDb;
}

double highestDb(const PairModel& model, std::span<const double> tangents) {
    std::vector<double> powers(tangents.size(), 1.0);
    for (size_t i = 0; i < model.pairs; ++i) {
        const PairShape zeros =
            ShapeOf(model.at(PairModel::zeroFrequency, i), model.at(PairModel::zeroDamping, i));
        const PairShape poles =
            ShapeOf(model.at(PairModel::poleFrequency, i), model.at(PairModel::poleDamping, i));
        for (size_t t = 0; t < tangents.size(); ++t) {
            powers[t] *= zeros.power(tangents[t]) / poles.power(tangents[t]);
        }
    }
    return model.gainDb() + decibelsPerNeper * elementary::Log(*std::ranges::max_element(powers));
}

bool isUsableForWords(const BoundedWords& bounded) {
    const bool isInRange = std::ranges::all_of(bounded.sections, [](const Biquad& section) {
        return FitsCoefWord(section.b0) && FitsCoefWord(section.b1) && FitsCoefWord(section.b2) &&
               FitsCoefWord(-section.a1) && FitsCoefWord(-section.a2);
    });
    return isInRange && bounded.keepsLimit && LargestPoleRadius(bounded.words) < outermostPole;
}

}  // namespace

// Takes the correction over; whether it can be fitted.
bool RefinedFitter::prepare(const WantedCorrection& wanted) {
    const bool isFinite =
        std::ranges::all_of(wanted.power, [](double power) { return std::isfinite(power); });
    if (!isFinite || !std::isfinite(wanted.gainClampDb) || wanted.sampleRate < lowestSampleRate) {
        return false;
    }
    if (wanted.sampleRate != sampleRate_) {
        sampleRate_ = wanted.sampleRate;
        coarse_ = MakeFitGrid(sampleRate_, searchPoints);
        fine_ = MakeFitGrid(sampleRate_, polishPoints);
        candidates_.emplace(coarse_, sampleRate_);
        boundTangents_ = BoundTangents(sampleRate_);
    }
    levels_.resize(wanted.power.size());
    std::ranges::transform(wanted.power, levels_.begin(), levelOf);
    // A filter that only cuts lies below the drop of its gain clamp; without a drop to take out,
    // the bound is unity.
    const double limitDb = std::max(wanted.gainClampDb, 0.0);
    for (FitGrid* grid : {&coarse_, &fine_}) {
        SetWanted(levels_, sampleRate_, *grid);
        grid->limitDb = limitDb;
    }
    return true;
}

bool RefinedFitter::isFlat() const {
    const auto [low, high] = std::ranges::minmax(fine_.wanted);
    return high - low <= flatDb;
}

PairModel RefinedFitter::search() {
    FoundModel found = GrowPairs(coarse_, *candidates_, memory_);
    ExchangePairs(coarse_, *candidates_, memory_, found);
    Improve(found.model, coarse_, settledSteps, settledTolerance, memory_);
    return found.model;
}

// The last steps on the fine grid, with the limit lowered while the model exceeds it between the
// grid's points.
void RefinedFitter::polish(PairModel& model, int32_t steps, int32_t boundRounds) {
    const double limitDb = fine_.limitDb;
    Improve(model, fine_, steps, polishTolerance, memory_);
    for (int32_t round = 0; round < boundRounds; ++round) {
        const double excess = highestDb(model, boundTangents_) - limitDb;
        if (excess <= boundExcessDb) {
            break;
        }
        fine_.limitDb -= excess;
        Improve(model, fine_, boundSteps, polishTolerance, memory_);
    }
    fine_.limitDb = limitDb;
}

std::optional<RefinedFit> RefinedFitter::encoded(const PairModel& model, double gainClampDb,
                                                 double limitDb) const {
    SectionChain chain{std::vector<Biquad>(mostPairs), model.gainDb() - gainClampDb};
    if (model.pairs > 0) {
        chain = LayOutSections(model, fine_, -gainClampDb);
    }
    const BoundedWords bounded = EncodeWithin(chain, limitDb - gainClampDb, boundTangents_);
    if (!isUsableForWords(bounded)) {
        return std::nullopt;
    }
    return RefinedFit{model, bounded.sections, bounded.words};
}

std::optional<RefinedFit> RefinedFitter::fit(const WantedCorrection& wanted) {
    if (!prepare(wanted)) {
        return std::nullopt;
    }
    PairModel model;
    if (isFlat()) {
        model.gainDb() = fine_.wanted.front();
    } else {
        model = search();
        polish(model, polishSteps, mostBoundRounds);
    }
    return encoded(model, wanted.gainClampDb, fine_.limitDb);
}

std::optional<RefinedFit> RefinedFitter::fitNoWorse(const WantedCorrection& wanted,
                                                    std::span<const int32_t> others) {
    std::optional<RefinedFit> found = fit(wanted);
    if (LargestPoleRadius(others) >= 1.0 || !prepare(wanted)) {
        return found;
    }
    const double rivalDb = errorDb(others, wanted);
    const auto isNoWorse = [&](const std::optional<RefinedFit>& one) {
        return one && !(rivalDb < errorDb(one->words, wanted));
    };
    if (isNoWorse(found)) {
        return found;
    }
    std::optional<PairModel> ofOthers = PairsOfSections(DecodeBiquads(others));
    if (ofOthers) {
        ofOthers->gainDb() += wanted.gainClampDb;
    }
    const auto ofFound = found ? std::optional(found->model) : std::nullopt;
    for (std::optional<PairModel> model : {ofFound, ofOthers}) {
        if (model && model->pairs > 0) {
            polish(*model, stubbornSteps, mostBoundRounds);
            std::optional<RefinedFit> polished = encoded(*model, wanted.gainClampDb, fine_.limitDb);
            if (isNoWorse(polished)) {
                return polished;
            }
        }
    }
    return std::nullopt;
}

std::optional<RefinedFit> RefinedFitter::goOn(const RefinedFit& last,
                                              const WantedCorrection& wanted, int32_t steps) {
    if (last.model.pairs == 0 || wanted.sampleRate != sampleRate_) {
        return fit(wanted);
    }
    if (!prepare(wanted)) {
        return std::nullopt;
    }
    PairModel model = last.model;
    polish(model, steps, 1);
    return encoded(model, wanted.gainClampDb, fine_.limitDb);
}

double RefinedFitter::errorDb(std::span<const int32_t> words, const WantedCorrection& wanted) {
    prepare(wanted);
    std::vector<double> levels = CascadeLevels(DecodeBiquads(words), fine_.tangents);
    for (double& level : levels) {
        level += wanted.gainClampDb;
    }
    return WeightedRmsDb(levels, fine_);
}

}  // namespace tonvane
