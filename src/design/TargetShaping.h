// Target and pass-band curves from a target record.
#pragma once

#include <cstdint>

#include "design/DesignGrid.h"
#include "design/TargetRecord.h"

namespace tonvane {

// The target's power on the grid of sampleRate hertz. Flat (1.0 everywhere) for the kind zeroCurve.
// Otherwise the first knot's level, with fourth-power falls below the first and above the last
// knot, times one second-order shelf for each pair of neighbouring knots, centred between them in
// the logarithm and as wide as their distance; point 0 is then 0.
void ShapeTarget(const TargetRecord& record, int32_t kind, int32_t sampleRate, DesignCurve& power);

// The same at any frequency, Hz.
double TargetPowerAt(const TargetRecord& record, int32_t kind, double hertz);

// The share of correction, 0 to 1, on the same grid: eighth-power falls outside the two band edges.
// Point 0 is 0.
void ShapePassband(const TargetRecord& record, int32_t sampleRate, DesignCurve& passband);

}  // namespace tonvane
