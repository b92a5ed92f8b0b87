// Seven biquads that follow the wanted correction itself.
//
// The iterated fit (IirFitter.h) follows the 256 taps of a FIR, which miss the wanted correction by
// up to a decibel themselves, most of it in the bass. This fit is held against the wanted power:
// grown pair by pair, with pairs exchanged as long as that helps, polished, and laid out as a chain
// of sections that does not overflow inside. Its words amplify nowhere by more than the drop of the
// gain clamp. docs/numerics.md tells the method. One input gives one set of words.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "amplifier/BiquadWords.h"
#include "design/DesignGrid.h"
#include "refine/Candidates.h"
#include "refine/FitGrid.h"
#include "refine/LevenbergMarquardt.h"

namespace tonvane {

// What a fit is to follow.
struct WantedCorrection {
    const DesignCurve& power;  // of the filter, at i*sampleRate/4096
    int32_t sampleRate;        // Hz
    double gainClampDb;        // the level drop that is in the power and that the words leave out
};

struct RefinedFit {
    PairModel model;               // without pairs for a flat correction
    std::vector<Biquad> sections;  // as designed, without the level drop
    std::vector<int32_t> words;    // the same, five a section
};

// Fits, and keeps what depends on nothing but the sample rate. Used by one thread.
class RefinedFitter {
  public:
    // The whole search: some tens of milliseconds. Nothing if the correction has a value that is no
    // number, at a rate below 1000 Hz, and if what comes out cannot be used: a coefficient beyond
    // the words' range, a pole on the unit circle, words above the bound.
    std::optional<RefinedFit> fit(const WantedCorrection& wanted);

    // The same, but where the words of another fit, stable ones, are closer to the correction, it
    // is polished longer, and then the other within the bound; nothing if that does not help
    // either.
    std::optional<RefinedFit> fitNoWorse(const WantedCorrection& wanted,
                                         std::span<const int32_t> others);

    // Goes on from a fit for about the same correction at the same rate by a few steps, some
    // hundred microseconds: for a target that is being moved. A flat fit cannot be gone on from:
    // the whole search runs.
    std::optional<RefinedFit> goOn(const RefinedFit& last, const WantedCorrection& wanted,
                                   int32_t steps = stepsWhileMoving);

    // The weighted RMS difference of sections' words from the correction, dB. The power has to be
    // finite, the rate 1000 Hz or more.
    double errorDb(std::span<const int32_t> words, const WantedCorrection& wanted);

    static constexpr int32_t stepsWhileMoving = 10;

  private:
    bool prepare(const WantedCorrection& wanted);
    [[nodiscard]] bool isFlat() const;
    [[nodiscard]] PairModel search();
    void polish(PairModel& model, int32_t steps, int32_t boundRounds);
    [[nodiscard]] std::optional<RefinedFit> encoded(const PairModel& model, double gainClampDb,
                                                    double limitDb) const;

    int32_t sampleRate_ = 0;
    FitGrid coarse_;  // for the search
    FitGrid fine_;    // for the last steps, the layout and the judgement
    std::optional<CandidateTable> candidates_;
    std::vector<double> boundTangents_;
    std::vector<double> levels_;  // the correction in dB
    LevenbergMemory memory_;
};

}  // namespace tonvane
