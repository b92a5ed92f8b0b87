#include "refine/Candidates.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr int32_t candidateFrequencies = 40;
constexpr double lowestCandidateHz = 40.0;
constexpr double highestCandidateHz = 18000.0;
constexpr double highestCandidateShare = 0.46;  // of the sample rate
constexpr double widestInDamping = 1.5;
constexpr double widestInFrequency = 0.6;
constexpr int32_t nearestPlaces = 2;  // this far apart counts as the same place
constexpr double leastDeterminant = 1e-12;

// Takes the weighted mean out.
void center(std::span<double> values, std::span<const double> weights, double weightSum) {
    double sum = 0.0;
    for (size_t t = 0; t < values.size(); ++t) {
        sum += weights[t] * values[t];
    }
    for (double& value : values) {
        value -= sum / weightSum;
    }
}

double weightedProduct(std::span<const double> x, std::span<const double> y,
                       std::span<const double> weights) {
    double sum = 0.0;
    for (size_t t = 0; t < x.size(); ++t) {
        sum += weights[t] * x[t] * y[t];
    }
    return sum;
}

}  // namespace

CandidateTable::CandidateTable(const FitGrid& grid, int32_t sampleRate)
    : weights_(grid.weights), weightSum_(grid.weightSum) {
    const double top = std::min(highestCandidateHz, highestCandidateShare * sampleRate);
    const double span = elementary::Log(top / lowestCandidateHz);
    for (int32_t i = 0; i < candidateFrequencies; ++i) {
        const double hertz =
            lowestCandidateHz * elementary::Exp(span * i / (candidateFrequencies - 1));
        const double frequency = 0.5 * elementary::Log(TangentSquare(hertz, sampleRate));
        for (const double q : {0.7, 1.4, 2.8}) {
            addPlace(grid, i, frequency, q);
        }
    }
}

void CandidateTable::addPlace(const FitGrid& grid, int32_t frequencyIndex, double frequency,
                              double q) {
    const double damping = -elementary::Log(q);
    const PairShape shape = ShapeOf(frequency, damping);
    std::vector<double> f(grid.size());
    std::vector<double> g(grid.size());
    for (size_t t = 0; t < grid.size(); ++t) {
        const double tangent = grid.tangents[t];
        const double scale = 2.0 * decibelsPerNeper / shape.power(tangent);
        f[t] = scale * shape.aa * tangent;
        g[t] = f[t] + 2.0 * scale * shape.b * (shape.b - tangent);
    }
    center(f, weights_, weightSum_);
    center(g, weights_, weightSum_);
    places_.push_back({frequencyIndex, frequency, damping, weightedProduct(f, f, weights_),
                       weightedProduct(g, g, weights_), weightedProduct(f, g, weights_)});
    inDamping_.insert(inDamping_.end(), f.begin(), f.end());
    inFrequency_.insert(inFrequency_.end(), g.begin(), g.end());
}

// `pull`: the weighted errors.
CandidateTable::Drawn CandidateTable::drawnApart(size_t place, std::span<const double> pull,
                                                 Split split) const {
    const Place& at = places_[place];
    const double* const f = &inDamping_[place * pull.size()];
    const double* const g = &inFrequency_[place * pull.size()];
    double fe = 0.0;
    double ge = 0.0;
    for (size_t t = 0; t < pull.size(); ++t) {
        fe += f[t] * pull[t];
        ge += g[t] * pull[t];
    }
    const double determinant = at.ff * at.gg - at.fg * at.fg;
    Drawn drawn;
    if (split == Split::both && determinant > leastDeterminant * at.ff * at.gg) {
        drawn.inDamping = -(at.gg * fe - at.fg * ge) / determinant;
        drawn.inFrequency = -(at.ff * ge - at.fg * fe) / determinant;
    } else if (at.ff > 0.0) {
        drawn.inDamping = -fe / at.ff;
    }
    drawn.inDamping = std::clamp(drawn.inDamping, -widestInDamping, widestInDamping);
    drawn.inFrequency = std::clamp(drawn.inFrequency, -widestInFrequency, widestInFrequency);
    const double x = drawn.inDamping;
    const double y = drawn.inFrequency;
    drawn.decrease =
        -(2.0 * (x * fe + y * ge) + x * x * at.ff + 2.0 * x * y * at.fg + y * y * at.gg);
    return drawn;
}

std::vector<PairParameters> CandidateTable::best(std::span<const double> errors, size_t count,
                                                 Split split) const {
    std::vector<double> pull(errors.begin(), errors.end());
    center(pull, weights_, weightSum_);
    for (size_t t = 0; t < pull.size(); ++t) {
        pull[t] *= weights_[t];
    }
    std::vector<Drawn> drawn(places_.size());
    for (size_t place = 0; place < places_.size(); ++place) {
        drawn[place] = drawnApart(place, pull, split);
    }
    std::vector<size_t> order(places_.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::stable_sort(
        order, [&](size_t a, size_t b) { return drawn[a].decrease > drawn[b].decrease; });

    std::vector<PairParameters> found;
    std::vector<int32_t> taken;
    for (const size_t place : order) {
        const Place& at = places_[place];
        const bool isNear = std::ranges::any_of(taken, [&](int32_t other) {
            return std::abs(at.frequencyIndex - other) <= nearestPlaces;
        });
        if (isNear) {
            continue;
        }
        taken.push_back(at.frequencyIndex);
        const double x = 0.5 * drawn[place].inDamping;
        const double y = 0.5 * drawn[place].inFrequency;
        found.push_back({{at.frequency + y, at.damping + x, at.frequency - y, at.damping - x}});
        if (found.size() == count) {
            break;
        }
    }
    return found;
}

}  // namespace tonvane
