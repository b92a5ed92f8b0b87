// How a plot of a design is drawn, in the words of the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tonvane {

struct PlotOptions {
    std::string output;                  // .png, .svg or .pdf
    std::vector<std::string> show;       // names of curves, or "all"; empty for the dialog's first
    std::string size = "750x300";        // of the whole picture
    int32_t scale = 1;                   // enlarges the picture and everything in it
    std::optional<std::string> caption;  // without one the design's figures
};

}  // namespace tonvane
