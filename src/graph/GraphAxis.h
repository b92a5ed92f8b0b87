// One axis of a plot: its range, its ticks, its labels and the way from values to pixels.
#pragma once

#include <cstdint>
#include <string>

namespace tonvane {

enum AxisScale : int32_t {
    linearScale = 0,
    logScale = 1,      // to base 10
    decibelScale = 2,  // of power: curves give power, positions are 10*log10 of it
};

struct CGraphAxis {
    // The largest distance from the origin that ToPixel tells.
    static constexpr int32_t farthest = 1 << 30;

    int32_t pixels = 0;  // length of the plot along this axis
    int32_t unit = 1;    // pixels of the image in one pixel of an ordinary display
    int32_t scale = linearScale;
    int32_t labelStyle = 0;    // 0: whole numbers, 1: two or three digits
    bool snapToTicks = false;  // the plot spans tickLow .. tickHigh instead of low .. high

    // Ranges in the axis's scale: log10 of the values for a logarithmic axis.
    double tickLow = 0.0;  // the range rounded to whole ticks
    double tickHigh = 0.0;
    double low = 0.0;  // the range asked for
    double high = 0.0;
    int32_t labelEvery = 0;  // every n-th tick is a major one with a label
    double tickStep = 0.0;   // distance of ticks; 0 for a logarithmic axis and for an empty range

    // Sets the range, in values, and generates the ticks for the present `pixels`: steps of 1, 2 or
    // 5 with about 80 pixels between labels; on a logarithmic axis whole digits of the decades.
    void SetRange(double lowest, double highest);

    // Sets the range with so many labelled divisions of so many ticks each, with nothing rounded. A
    // logarithmic axis has its own ticks.
    void SetFixedRange(double lowest, double highest, int32_t divisions, int32_t subdivisions);

    // Ends of the plot, in the axis's scale.
    [[nodiscard]] double spanLow() const { return snapToTicks ? tickLow : low; }
    [[nodiscard]] double spanHigh() const { return snapToTicks ? tickHigh : high; }

    // Pixels from the start of the axis to a value in the axis's scale, toward zero. What is
    // farther than `farthest`, infinities among it, lies there; what is no number lies at minus
    // `farthest`.
    [[nodiscard]] int32_t ToPixel(double value) const;

    // The value in engineering notation: "20k", "100 " with a blank in the place of the prefix; "0
    // " below 1e-15. Style 1 changes to the next prefix a digit earlier: "50.0 ", "0.50k".
    [[nodiscard]] std::string FormatLabel(double value) const;

  private:
    void makeLinearTicks();
    void makeLogTicks();
};

// 10 to a whole power, correctly rounded between 1e-22 and 1e22.
double PowerOfTen(int32_t exponent);

// The digit of the decade that a position on a logarithmic axis stands at, 1 to 9; positions a
// rounding error below a digit count as that digit.
int32_t DecadeDigit(double log10OfValue);

}  // namespace tonvane
