// The search for seven pairs of zeros and poles that follow the wanted levels of a grid.
#pragma once

#include "refine/Candidates.h"
#include "refine/LevenbergMarquardt.h"
#include "refine/PairModel.h"

namespace tonvane {

// A model and its cost.
struct FoundModel {
    double cost = 0.0;
    PairModel model;
};

// Grows seven pairs from none: each turn draws the best candidates into the best two models so far
// and improves what comes of it. Models whose costs are within a thousandth count as one.
FoundModel GrowPairs(const FitGrid& grid, const CandidateTable& candidates,
                     LevenbergMemory& memory);

// Takes out the pairs that matter least, one at a time, and puts candidates in their place, as long
// as that lowers the cost.
void ExchangePairs(const FitGrid& grid, const CandidateTable& candidates, LevenbergMemory& memory,
                   FoundModel& best);

}  // namespace tonvane
