#include "refine/PairSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tonvane {

namespace {

constexpr size_t beam = 2;    // models that are kept
constexpr size_t branch = 2;  // candidates that each is tried with
constexpr int32_t growSteps = 8;
constexpr double growTolerance = 1e-3;
constexpr double sameCost = 1e-3;
constexpr int32_t settleSteps = 20;
constexpr double settleTolerance = 1e-5;

constexpr int32_t exchangeRounds = 8;
constexpr size_t exchangeCandidates = 6;  // of each kind
constexpr int32_t firstSteps = 4;
constexpr double removalTolerance = 1e-2;
constexpr int32_t laterSteps = 15;
constexpr double trialTolerance = 1e-3;
constexpr double hopeless = 2.0;   // times the best cost after the first steps
constexpr double worthIt = 0.998;  // of the best cost
constexpr double roundTolerance = 1e-4;

bool isCheaper(const FoundModel& a, const FoundModel& b) {
    return a.cost < b.cost;
}

// The cheapest models that differ, in the order of their costs.
std::vector<FoundModel> cheapest(std::vector<FoundModel> models) {
    std::ranges::stable_sort(models, isCheaper);
    std::vector<FoundModel> kept;
    for (const FoundModel& model : models) {
        const bool isKnown = std::ranges::any_of(kept, [&](const FoundModel& other) {
            return std::fabs(model.cost - other.cost) <= sameCost * other.cost;
        });
        if (!isKnown) {
            kept.push_back(model);
        }
        if (kept.size() == beam) {
            break;
        }
    }
    return kept;
}

PairModel gainAlone(const FitGrid& grid) {
    PairModel model;
    for (size_t t = 0; t < grid.size(); ++t) {
        model.gainDb() += grid.weights[t] * grid.wanted[t];
    }
    model.gainDb() /= grid.weightSum;
    return model;
}

struct Removal {
    double cost;
    size_t poles;
    size_t zeros;
};

// What is left without each pair of zeros and each pair of poles at the best gain, cheapest first.
std::vector<Removal> removals(const PairModel& model, const FitGrid& grid, ModelCurve& curve) {
    std::vector<Removal> list;
    for (size_t poles = 0; poles < model.pairs; ++poles) {
        for (size_t zeros = 0; zeros < model.pairs; ++zeros) {
            const std::vector<double> errors =
                ErrorsOf(WithoutPairs(model, zeros, poles), grid, curve);
            double mean = 0.0;
            for (size_t t = 0; t < errors.size(); ++t) {
                mean += grid.weights[t] * errors[t];
            }
            mean /= grid.weightSum;
            double cost = 0.0;
            for (size_t t = 0; t < errors.size(); ++t) {
                cost += grid.weights[t] * (errors[t] - mean) * (errors[t] - mean);
            }
            list.push_back({cost, poles, zeros});
        }
    }
    std::ranges::stable_sort(list,
                             [](const Removal& a, const Removal& b) { return a.cost < b.cost; });
    return list;
}

// The first model with another pair in the place of the removed that costs less than the best.
std::optional<FoundModel> exchanged(const Removal& removal, const FitGrid& grid,
                                    const CandidateTable& candidates, LevenbergMemory& memory,
                                    const FoundModel& best) {
    PairModel rest = WithoutPairs(best.model, removal.zeros, removal.poles);
    Improve(rest, grid, firstSteps, removalTolerance, memory);
    const std::vector<double> errors = ErrorsOf(rest, grid, memory.trial);
    const std::array lists{candidates.best(errors, exchangeCandidates, Split::both),
                           candidates.best(errors, exchangeCandidates, Split::dampingOnly)};
    const size_t each = std::min(lists[0].size(), lists[1].size());
    for (size_t i = 0; i < 2 * each; ++i) {
        FoundModel trial{0.0, WithPair(rest, lists[i % 2][i / 2])};
        trial.cost = Improve(trial.model, grid, firstSteps, trialTolerance, memory);
        if (trial.cost <= hopeless * best.cost) {
            trial.cost = Improve(trial.model, grid, laterSteps, trialTolerance, memory);
        }
        if (trial.cost < worthIt * best.cost) {
            return trial;
        }
    }
    return std::nullopt;
}

}  // namespace

FoundModel GrowPairs(const FitGrid& grid, const CandidateTable& candidates,
                     LevenbergMemory& memory) {
    std::vector<FoundModel> kept{{0.0, gainAlone(grid)}};
    for (size_t pairs = 0; pairs < mostPairs; ++pairs) {
        std::vector<FoundModel> grown;
        for (const FoundModel& from : kept) {
            const std::vector<double> errors = ErrorsOf(from.model, grid, memory.trial);
            for (const PairParameters& pair : candidates.best(errors, branch, Split::both)) {
                FoundModel next{0.0, WithPair(from.model, pair)};
                next.cost = Improve(next.model, grid, growSteps, growTolerance, memory);
                grown.push_back(next);
            }
        }
        kept = cheapest(std::move(grown));
    }
    for (FoundModel& model : kept) {
        model.cost = Improve(model.model, grid, settleSteps, settleTolerance, memory);
    }
    return *std::ranges::min_element(kept, isCheaper);
}

void ExchangePairs(const FitGrid& grid, const CandidateTable& candidates, LevenbergMemory& memory,
                   FoundModel& best) {
    for (int32_t round = 0; round < exchangeRounds; ++round) {
        std::array<bool, mostPairs> isTried{};
        std::optional<FoundModel> better;
        for (const Removal& removal : removals(best.model, grid, memory.trial)) {
            if (isTried[removal.poles]) {
                continue;
            }
            isTried[removal.poles] = true;
            better = exchanged(removal, grid, candidates, memory, best);
            if (better) {
                break;
            }
        }
        if (!better) {
            return;
        }
        best = *better;
        best.cost = Improve(best.model, grid, settleSteps, roundTolerance, memory);
    }
}

}  // namespace tonvane
