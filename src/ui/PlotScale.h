// What a plot's images are made of on a display of any density.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tonvane {

struct PlotScale {
    int32_t unit;       // pixels of an image in one of an ordinary display: margins, lines, handles
    double fontPixels;  // height of the plot's text
};

// For a display with `density` pixels where an ordinary one has one. Lines are whole pixels, text
// grows by the fraction.
inline PlotScale PlotScaleAt(double density) {
    constexpr double ordinaryFont = 11.0;
    return {std::max(1, static_cast<int32_t>(std::lround(density))), ordinaryFont * density};
}

}  // namespace tonvane
