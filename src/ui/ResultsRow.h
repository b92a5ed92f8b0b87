// The results of an analysis as the row of a list.
#pragma once

#include <array>
#include <string>

#include "tuning/TuningRun.h"

namespace tonvane {

constexpr std::array<const char*, 5> resultsHeadings{"Speaker", "Polarity", "Delay", "Loud",
                                                     "Cutoff"};

// The texts below the headings; without a valid response all but the first are empty.
std::array<std::string, resultsHeadings.size()> ResultsRow(const TuningRun& run);

}  // namespace tonvane
