// From the points of a curve to strokes on the plot.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graph/Canvas.h"
#include "graph/GraphAxis.h"

namespace tonvane {

enum class LevelKind {
    position,  // in the scale of the level axis
    power,     // to be shown as 10*log10; negative values by their size
};

// Appends the strokes of a curve: columns[i] is the pixel column of point i, values[i] its level.
// All points of one column become one vertical stroke from the lowest to the highest of them, and a
// line leads from the last point of a column to the first of the next, so that a curve of any
// number of points takes two strokes a column. Points that are no numbers lie below the plot.
void AppendCurveStrokes(std::span<const int32_t> columns, std::span<const double> values,
                        LevelKind kind, const CGraphAxis& levels, std::vector<Segment>& strokes);

}  // namespace tonvane
