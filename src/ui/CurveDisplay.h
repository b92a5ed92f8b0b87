// The curves of a tuning run on the plot, and the user's edit of the target on its way back.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "graph/CurveGraphWindow.h"
#include "tuning/TuningRun.h"

namespace tonvane {

// What to draw, as states of check boxes: 0 no, 1 yes, 2 (undetermined) yes; a target or a
// pass-band of state 2 is drawn without its handles.
struct ShownCurves {
    int32_t showSpec1 = 0;    // response
    int32_t showSpec2 = 1;    // smoothed response
    int32_t showTarget = 1;   // target
    int32_t showWeight = 0;   // pass-band
    int32_t showFilter = 0;   // FIR
    int32_t showMixed = 0;    // response through the FIR
    int32_t showFilter2 = 1;  // biquads
    int32_t showMixed2 = 0;   // response through the biquads
};

struct CurveStyle {
    int32_t ShownCurves::*state;
    const char* name;    // for command lines
    const char* legend;  // for people
    Color color;
    int32_t penWidth;
};

// All curves, in the order in which they are drawn.
extern const std::array<CurveStyle, 8> curveStyles;

// Gives a plot the colours, scales and ranges of the dialog's: decibels from -40 to 10, a
// logarithmic frequency axis, handles that can be dragged. Before Create or after.
void SetUpPlot(CCurveGraphWindow& plot);

// The curves that are to be shown and that the run has, in the order in which they are drawn.
std::vector<const CurveStyle*> DrawnCurves(const TuningRun& run, const ShownCurves& shown);

// Draws the plot anew from the state of the run: the curves of `shown` that there are, and the
// handles of the plot's own record.
void RedrawCurves(const TuningRun& run, const ProgramValues& values, const ShownCurves& shown,
                  CCurveGraphWindow& plot);

// A run and the plot that shows it; all of them outlive the display.
class CurveDisplay {
  public:
    CurveDisplay(TuningRun& run, const ProgramValues& values, CCurveGraphWindow& plot)
        : run_(run), values_(values), plot_(plot) {}

    void RedrawCurves() { tonvane::RedrawCurves(run_, values_, shown, plot_); }

    // Takes the plot's record into the run and draws anew; with `redesign` and a response it is
    // designed for. A moving handle redraws only.
    void ApplyCurveEdit(bool redesign);

    ShownCurves shown;

  private:
    TuningRun& run_;
    const ProgramValues& values_;
    CCurveGraphWindow& plot_;
};

}  // namespace tonvane
