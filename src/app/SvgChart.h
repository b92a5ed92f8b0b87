// A picture of curves over frequency for a page: axes, grid, legend and lines as inline SVG.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace tonvane {

struct ChartCurve {
    std::string name;  // plain text
    std::string colour;
    bool dashed = false;
    std::vector<double> decibels;  // one for each frequency; what is no number leaves a gap
};

// The frequencies (Hz, rising, above 0) lie on a logarithmic axis. The level axis holds all curves,
// but at most the upper 60 dB of them.
std::string SvgChart(std::span<const double> frequencies, std::span<const ChartCurve> curves);

// A text with the characters that mark up a page replaced. Bytes below 32 become blanks.
std::string EscapeMarkup(const std::string& text);

}  // namespace tonvane
