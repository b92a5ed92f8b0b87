// Improving a model's fit step by step (Levenberg 1944, Marquardt 1963; the damping after Nielsen
// 1999).
#pragma once

#include <cstdint>

#include "refine/PairModel.h"

namespace tonvane {

// Memory that is used again from call to call.
struct LevenbergMemory {
    ModelCurve curve;
    ModelCurve trial;
    NormalEquations equations;
};

// Brings the model into the grid's box and takes at most `steps` steps towards a smaller cost. Ends
// when a step gains less than `tolerance` of the cost or none gains at all. Returns the cost, which
// is never above that of the model as it came, once in the box. Parameters on their bound are left
// out while the cost falls towards the outside; no step moves a frequency or damping by more
// than 1.
double Improve(PairModel& model, const FitGrid& grid, int32_t steps, double tolerance,
               LevenbergMemory& memory);

}  // namespace tonvane
