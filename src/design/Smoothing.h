// Smoothing of a response spectrum onto the design grid.
#pragma once

#include "design/DesignGrid.h"
#include "transform/ComplexVector.h"

namespace tonvane {

// Turns the 16385 bins of a response into smoothed power at the 2049 points of the design grid: a
// Hann window of fixed width that reduces by 8, then a window of a quarter octave to either side,
// ((H+1)^2 - q^2)^2. Windows are cut at the ends of the band and renormalised. `scratch` holds the
// curve between the stages.
void SmoothSpectrum(const ComplexVector& spectrum, DesignCurve& scratch, DesignCurve& power);

}  // namespace tonvane
