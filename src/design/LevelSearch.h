// Where a bisection of the level ends, found with few of its trials.
//
// The search of a design halves a range of levels by trials of the loudness that the filter of each
// midpoint leaves. That loudness rises with the level, so where a midpoint lies is known as soon as
// a level below it is too loud or one above it is not: the two ends of the last interval decide
// all. A model without transforms says where to look, and a quick trial, with the fast elementary
// functions and the loudness as a sum over the response's correlation, tells the sides apart.
// Wherever that leaves a doubt, and wherever the loudness does not rise, every midpoint is decided,
// by the exact trial where the quick one is within 1e-9 of the wanted loudness. So the result is
// that of the bisection, to the bit.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

#include "design/BandWeight.h"
#include "design/DesignGrid.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

class LevelSearch {
  public:
    static constexpr int32_t midpoints = 16;

    // Needs the transform tables.
    LevelSearch();

    // Takes the 16385 bins of the response that is listened to, and how.
    void takeResponse(const ComplexVector& spectrum, const BandWeight& weight);

    // The filters among which to search: min(target*level/measured, 1) inside the pass-band, gain^2
    // outside, with so many taps.
    struct Filters {
        const DesignCurve& target;
        const DesignCurve& measured;
        const DesignCurve& passband;
        double gain;  // the wanted ratio of loudness as well, amplitude
        int32_t tapCount;
    };

    // The ratio of loudness for a level, by the exact trial.
    using ExactTrial = std::function<double(double level)>;

    // The last of the sixteen midpoints, from the bounds 1e-12 and 1e4 times `top`. Allocates
    // nothing. NaN where levels are none.
    double find(const Filters& filters, double top, const ExactTrial& exact);

  private:
    struct Interval;
    struct Tried;
    struct Known;

    double guess(const Interval& all) const;
    double quickRatio(double level);
    bool isTooLoud(double level, const ExactTrial& exact);
    std::optional<Tried> quickTry(double level, Known& known);
    std::optional<double> findQuickly(const Interval& all);
    void takeFilters(const Filters& filters);
    void shapeFilter(double level);
    double loudnessOfTaps() const;

    double gain_ = 1.0;
    int32_t tapCount_ = 0;
    double loudness_ = 0.0;                             // weighted power of the response
    std::array<double, designPoints> weightedPower_{};  // of the bins around each point
    std::array<double, designPoints> ratio_{};          // target over measured
    std::array<double, designPoints> inside_{};         // pass-band
    std::array<double, designPoints> outside_{};        // power of the filter's other part
    std::array<double, designPoints> logs_{};
    SpectrumBuffer correlation_;  // 32768: of the weighted response, times the sum of weights
    SpectrumBuffer filter_;       // 4096
    SpectrumBuffer work_;         // 4096
};

}  // namespace tonvane
