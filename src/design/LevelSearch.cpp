#include "design/LevelSearch.h"

#include <algorithm>
#include <cmath>

#include "design/MinimumPhase.h"
#include "elementary/Elementary.h"
#include "elementary/FastFunctions.h"

namespace tonvane {

namespace {

constexpr double undecided = 1e-9;  // of the wanted ratio: where the exact trial decides
constexpr int32_t quickRounds = 8;
constexpr double usualSlope = 0.3;  // of ln(ratio) against ln(level)
constexpr int32_t binsPerPoint = (responseBins - 1) / (designPoints - 1);

}  // namespace

struct LevelSearch::Interval {
    double low;
    double high;

    [[nodiscard]] double middle() const { return std::sqrt(low * high); }

    // The interval whose middle is the last midpoint, given the side of all others.
    [[nodiscard]] Interval last(const auto& isTooLoud) const {
        Interval interval = *this;
        for (int32_t i = 1; i < midpoints; ++i) {
            const double level = interval.middle();
            (isTooLoud(level) ? interval.high : interval.low) = level;
        }
        return interval;
    }
};

// A level and the logarithm of its ratio over the wanted one.
struct LevelSearch::Tried {
    double level;
    double log;
};

// What is known of the sides: the highest level that is not too loud, the lowest that is.
struct LevelSearch::Known {
    double quiet;
    double loud;
};

LevelSearch::LevelSearch() {
    correlation_.resize(responseLength);
    filter_.resize(designLength);
    work_.resize(designLength);
}

// The transform of the weighted power is the correlation, of which a filter of n taps sees n lags.
void LevelSearch::takeResponse(const ComplexVector& spectrum, const BandWeight& weight) {
    std::ranges::fill(correlation_.spectrum, 0.0);
    weightedPower_.fill(0.0);
    double sum = 0.0;
    for (int32_t k = weight.firstBin; k < weight.endBin; ++k) {
        const double power = elementary::Power(spectrum[k]) * weight.weights[k];
        correlation_.spectrum[k] = power;
        weightedPower_[(k + binsPerPoint / 2) / binsPerPoint] += power;
        sum += power;
    }
    correlation_.inverse();
    loudness_ = sum;
}

double LevelSearch::find(const Filters& filters, double top, const ExactTrial& exact) {
    takeFilters(filters);
    const Interval all{1e-12 * top, 10000.0 * top};
    if (const auto level = findQuickly(all)) {
        return *level;
    }
    return all.last([&](double level) { return isTooLoud(level, exact); }).middle();
}

void LevelSearch::takeFilters(const Filters& filters) {
    gain_ = filters.gain;
    tapCount_ = filters.tapCount;
    inside_ = filters.passband;
    for (int32_t i = 0; i < designPoints; ++i) {
        ratio_[i] = filters.target[i] / filters.measured[i];
        outside_[i] = (1.0 - inside_[i]) * (gain_ * gain_);
    }
}

// The two ends of the last interval by quick trials; nothing where they leave a doubt.
std::optional<double> LevelSearch::findQuickly(const Interval& all) {
    Known known{all.low, all.high};
    double predicted = guess(all);
    double slope = usualSlope;
    std::optional<Tried> before;
    for (int32_t round = 0; round < quickRounds; ++round) {
        const Interval cell = all.last([&](double level) {
            return level >= known.loud || (level > known.quiet && level > predicted);
        });
        const bool isLowKnown = cell.low <= known.quiet;
        const bool isHighKnown = cell.high >= known.loud;
        if (isLowKnown && isHighKnown) {
            return cell.middle();
        }
        const bool isLowNearer = predicted / cell.low < cell.high / predicted;
        const auto now =
            quickTry(isHighKnown || (isLowNearer && !isLowKnown) ? cell.low : cell.high, known);
        if (!now) {
            return std::nullopt;
        }
        if (before) {
            const double secant =
                (now->log - before->log) / elementary::Log(now->level / before->level);
            slope = std::clamp(secant, 0.01, 2.0);
        }
        predicted = now->level * elementary::Exp(std::clamp(-now->log / slope, -3.0, 3.0));
        before = now;
    }
    return std::nullopt;
}

// Nothing for a ratio that is no number or too close to the wanted one.
std::optional<LevelSearch::Tried> LevelSearch::quickTry(double level, Known& known) {
    const double ratio = quickRatio(level) / gain_;
    if (!(std::fabs(ratio - 1.0) > undecided) || !(ratio > 0.0) || std::isinf(ratio)) {
        return std::nullopt;
    }
    (ratio > 1.0 ? known.loud : known.quiet) = level;
    return Tried{level, elementary::Log(ratio)};
}

bool LevelSearch::isTooLoud(double level, const ExactTrial& exact) {
    const double ratio = quickRatio(level);
    const bool isDecided = std::fabs(ratio / gain_ - 1.0) > undecided;
    return gain_ < (isDecided ? ratio : exact(level));
}

// Where the loudness of the filters would be the wanted one without the truncation to taps.
double LevelSearch::guess(const Interval& all) const {
    const double wanted = gain_ * gain_ * loudness_;
    double outside = 0.0;
    for (int32_t i = 0; i < designPoints; ++i) {
        outside += weightedPower_[i] * outside_[i];
    }
    const auto isTooLoud = [&](double level) {
        constexpr int32_t lanes = 4;
        std::array<double, lanes> sums{};
        for (int32_t i = 0; i + lanes <= designPoints; i += lanes) {
            for (int32_t k = 0; k < lanes; ++k) {
                const double share = std::min(ratio_[i + k] * level, 1.0);
                sums[k] += weightedPower_[i + k] * inside_[i + k] * share;
            }
        }
        return outside + (sums[0] + sums[1]) + (sums[2] + sums[3]) > wanted;
    };
    return all.last(isTooLoud).middle();
}

double LevelSearch::quickRatio(double level) {
    shapeFilter(level);
    return std::sqrt(loudnessOfTaps() / loudness_);
}

void LevelSearch::shapeFilter(double level) {
    for (int32_t i = 0; i < designPoints; ++i) {
        const double ratio = ratio_[i] * level;
        logs_[i] = inside_[i] * (ratio > 1.0 ? 1.0 : ratio) + outside_[i];
    }
    elementary::FastLog(logs_);
    for (int32_t i = 0; i < designPoints; ++i) {
        filter_.spectrum[i] = 0.5 * logs_[i];
    }
    FastMinimumPhaseFromLog(filter_, work_);
}

// The power of the response through the taps: its correlation times that of the taps.
double LevelSearch::loudnessOfTaps() const {
    constexpr int32_t lanes = 4;  // lags side by side
    const double* const h = filter_.samples.data.get();
    double loudness = 0.0;
    for (int32_t lag = 0; lag < tapCount_; lag += lanes) {
        std::array<double, lanes> products{};
        const int32_t count = tapCount_ - lag;
        int32_t i = 0;
        for (; i + lanes <= count; ++i) {
            for (int32_t k = 0; k < lanes; ++k) {
                products[k] += h[i] * h[i + lag + k];
            }
        }
        for (; i < count; ++i) {
            for (int32_t k = 0; i + k < count; ++k) {
                products[k] += h[i] * h[i + lag + k];
            }
        }
        for (int32_t k = 0; k < std::min(lanes, count); ++k) {
            const double twice = lag + k == 0 ? 0.5 : 1.0;
            loudness += twice * correlation_.samples[lag + k] * products[k];
        }
    }
    return loudness;
}

}  // namespace tonvane
