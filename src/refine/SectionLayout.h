// From pairs of zeros and poles to a chain of sections that does not overflow inside.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "amplifier/BiquadWords.h"
#include "refine/FitGrid.h"
#include "refine/PairModel.h"

namespace tonvane {

// Sections in the order in which the signal goes through them, each with a b0 of 1, and the gain in
// dB that they share.
struct SectionChain {
    std::vector<Biquad> sections;
    double gainDb = 0.0;

    // The sections with the gain, the same share in each: gains chosen section by section would
    // take coefficients out of the words' range.
    [[nodiscard]] std::vector<Biquad> withGain(double db) const;
};

// Zeros go to poles so that the squared peak-to-peak levels of the sections sum to the least. Of
// the orders, those whose highest level behind any section is at most 3 dB above the highest at the
// output (or above 0 dB, if that is less), or, if there is none, as low as can be; of these the one
// with the least rounding noise at the output. `extraDb` is added to the model's gain.
SectionChain LayOutSections(const PairModel& model, const FitGrid& grid, double extraDb);

// The model of the sections' levels: zeros and poles outside the unit circle come inside, which
// leaves the levels as they are, and what the box of a grid does not hold is for Improve to move.
// Nothing for sections whose zeros or poles are no pairs of that kind: one at 0 Hz or at half the
// rate, or real ones on both sides of the circle. At most seven sections.
std::optional<PairModel> PairsOfSections(std::span<const Biquad> sections);

}  // namespace tonvane
