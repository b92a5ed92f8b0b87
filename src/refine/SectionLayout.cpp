#include "refine/SectionLayout.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

#include "elementary/Elementary.h"
#include "refine/SectionPower.h"

namespace tonvane {

namespace {

constexpr double insideDb = 3.0;
constexpr double unreachable = std::numeric_limits<double>::infinity();

// A pair as 1 + c1/z + c2/z^2, and the factor taken out.
struct DigitalPair {
    double c1;
    double c2;
    double factor;
};

DigitalPair digitalPair(const PairShape& shape) {
    const double a = std::sqrt(shape.aa);
    const double factor = 1.0 + a + shape.b;
    return {2.0 * (shape.b - 1.0) / factor, (1.0 - a + shape.b) / factor, factor};
}

double peakToPeakDb(const double* above, const double* below, size_t points) {
    double low = above[0] / below[0];
    double high = low;
    for (size_t t = 1; t < points; ++t) {
        const double power = above[t] / below[t];
        low = std::min(low, power);
        high = std::max(high, power);
    }
    return decibelsPerNeper * elementary::Log(high / low);
}

// For each pair of poles its pair of zeros, by dynamic programming over the sets of zeros that are
// used up by the first poles.
std::vector<size_t> zerosForPoles(const ModelCurve& curve, size_t pairs, size_t points) {
    std::vector<double> squares;  // poles by zeros
    for (size_t poles = 0; poles < pairs; ++poles) {
        for (size_t zeros = 0; zeros < pairs; ++zeros) {
            const double level =
                peakToPeakDb(&curve.above[zeros * points], &curve.below[poles * points], points);
            squares.push_back(level * level);
        }
    }
    const size_t sets = size_t{1} << pairs;
    std::vector<double> cost(sets, unreachable);
    std::vector<size_t> last(sets);
    cost[0] = 0.0;
    for (size_t set = 0; set + 1 < sets; ++set) {
        const auto poles = static_cast<size_t>(std::popcount(set));
        for (size_t zeros = 0; zeros < pairs; ++zeros) {
            const size_t next = set | size_t{1} << zeros;
            if (next == set) {
                continue;
            }
            const double sum = cost[set] + squares[poles * pairs + zeros];
            if (sum < cost[next]) {
                cost[next] = sum;
                last[next] = zeros;
            }
        }
    }
    std::vector<size_t> zeros(pairs);
    for (size_t set = sets - 1, poles = pairs; poles-- > 0; set &= ~(size_t{1} << zeros[poles])) {
        zeros[poles] = last[set];
    }
    return zeros;
}

// What the orders of sections are judged by.
class OrderSearch {
  public:
    OrderSearch(std::span<const Biquad> sections, const FitGrid& grid);

    [[nodiscard]] std::vector<size_t> best() const;

  private:
    // The highest power behind these sections.
    [[nodiscard]] double highestOf(size_t set) const;
    // The noise at the output from a rounding in a section with these behind it.
    [[nodiscard]] double noiseOf(size_t section, size_t behind) const;

    size_t count_;
    size_t points_;
    size_t sets_;
    std::vector<double> powers_;  // of each set of sections, on the grid
    std::vector<double> noise_;   // of a rounding in each section at its output
};

OrderSearch::OrderSearch(std::span<const Biquad> sections, const FitGrid& grid)
    : count_(sections.size()),
      points_(grid.size()),
      sets_(size_t{1} << count_),
      powers_(sets_ * points_, 1.0),
      noise_(count_ * points_) {
    for (size_t k = 0; k < count_; ++k) {
        const SectionPower power = PowerOf(sections[k]);
        double* const alone = &powers_[(size_t{1} << k) * points_];
        for (size_t t = 0; t < points_; ++t) {
            const double tangent = grid.tangents[t];
            const double below = power.below.at(tangent);
            alone[t] = power.above.at(tangent) / below;
            // Times the band of the point, for a mean over frequency.
            noise_[k * points_ + t] = grid.hertz[t] * (1.0 + tangent) * (1.0 + tangent) / below;
        }
    }
    for (size_t set = 1; set < sets_; ++set) {
        const size_t rest = set & (set - 1);
        if (rest == 0) {
            continue;
        }
        const double* const alone = &powers_[(set ^ rest) * points_];
        const double* const others = &powers_[rest * points_];
        for (size_t t = 0; t < points_; ++t) {
            powers_[set * points_ + t] = alone[t] * others[t];
        }
    }
}

double OrderSearch::highestOf(size_t set) const {
    const auto first = powers_.begin() + static_cast<std::ptrdiff_t>(set * points_);
    return *std::max_element(first, first + static_cast<std::ptrdiff_t>(points_));
}

double OrderSearch::noiseOf(size_t section, size_t behind) const {
    const double* const noise = &noise_[section * points_];
    const double* const gain = &powers_[behind * points_];
    double sum = 0.0;
    for (size_t t = 0; t < points_; ++t) {
        sum += noise[t] * gain[t];
    }
    return sum;
}

std::vector<size_t> OrderSearch::best() const {
    // The least that the largest level inside can be up to each set, and then the least noise
    // without exceeding what is allowed.
    std::vector<double> inside(sets_);
    std::vector<double> reached(sets_);
    for (size_t set = 1; set < sets_; ++set) {
        inside[set] = highestOf(set);
        double before = unreachable;
        for (size_t k = 0; k < count_; ++k) {
            if ((set >> k & 1) != 0) {
                before = std::min(before, reached[set & ~(size_t{1} << k)]);
            }
        }
        reached[set] = std::max(before, inside[set]);
    }
    const double output = std::max(inside[sets_ - 1], 1.0);
    const double allowed = std::max(reached[sets_ - 1], output * elementary::Exp10(0.1 * insideDb));

    std::vector<double> noise(sets_, unreachable);
    std::vector<size_t> last(sets_);
    noise[0] = 0.0;
    for (size_t set = 1; set < sets_; ++set) {
        for (size_t k = 0; k < count_ && inside[set] <= allowed; ++k) {
            const size_t before = set & ~(size_t{1} << k);
            if (before == set || noise[before] == unreachable) {
                continue;
            }
            const double sum = noise[before] + noiseOf(k, sets_ - 1 - set);
            if (sum < noise[set]) {
                noise[set] = sum;
                last[set] = k;
            }
        }
    }
    std::vector<size_t> order(count_);
    for (size_t set = sets_ - 1, place = count_; place-- > 0; set &= ~(size_t{1} << order[place])) {
        order[place] = last[set];
    }
    return order;
}

}  // namespace

std::vector<Biquad> SectionChain::withGain(double db) const {
    const double share = elementary::Exp10(0.05 * db / static_cast<double>(sections.size()));
    std::vector<Biquad> result = sections;
    for (Biquad& section : result) {
        section.b0 *= share;
        section.b1 *= share;
        section.b2 *= share;
    }
    return result;
}

std::optional<PairModel> PairsOfSections(std::span<const Biquad> sections) {
    PairModel model;
    model.pairs = sections.size();
    for (size_t i = 0; i < sections.size(); ++i) {
        const SectionPower power = PowerOf(sections[i]);
        const auto place = [&](const QuadraticPower& pair, size_t block) {
            const double square = pair.c0 / pair.c2;  // w0^2
            const double damping = std::fabs(pair.c1 / pair.c2) / std::sqrt(square);
            const double frequency = 0.5 * elementary::Log(square);
            model.at(static_cast<PairModel::Block>(block), i) = frequency;
            model.at(static_cast<PairModel::Block>(block + 1), i) = elementary::Log(damping);
            return std::isfinite(frequency) && std::isfinite(elementary::Log(damping));
        };
        if (!place(power.above, PairModel::zeroFrequency) ||
            !place(power.below, PairModel::poleFrequency)) {
            return std::nullopt;
        }
        model.gainDb() +=
            2.0 * decibelsPerNeper * elementary::Log(std::fabs(power.above.c2 / power.below.c2));
    }
    return model;
}

SectionChain LayOutSections(const PairModel& model, const FitGrid& grid, double extraDb) {
    ModelCurve curve;
    EvaluateModel(model, grid, curve);
    SectionChain chain;
    double factor = 1.0;
    const std::vector<size_t> zerosOf = zerosForPoles(curve, model.pairs, grid.size());
    for (size_t i = 0; i < model.pairs; ++i) {
        const DigitalPair zeros = digitalPair(curve.zeros[zerosOf[i]]);
        const DigitalPair poles = digitalPair(curve.poles[i]);
        chain.sections.push_back({1.0, zeros.c1, zeros.c2, poles.c1, poles.c2});
        factor *= zeros.factor / poles.factor;
    }
    chain.gainDb = model.gainDb() + extraDb + 2.0 * decibelsPerNeper * elementary::Log(factor);
    const OrderSearch search(chain.withGain(chain.gainDb), grid);
    std::vector<Biquad> ordered;
    for (const size_t place : search.best()) {
        ordered.push_back(chain.sections[place]);
    }
    chain.sections = ordered;
    return chain;
}

}  // namespace tonvane
