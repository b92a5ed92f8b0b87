// The plot of a run as a picture for a report: the dialog's plot, a legend of the curves in it, and
// a caption.
#pragma once

#include <cstdint>
#include <string>

#include "tuning/TuningRun.h"
#include "ui/CurveDisplay.h"

namespace tonvane {

struct PlotPicture {
    int32_t width = 750;  // of the whole picture, in pixels of an ordinary display
    int32_t height = 300;
    int32_t scale = 1;  // enlarges the picture and everything in it
    ShownCurves shown;
    std::string caption;  // UTF-8, below the legend; wrapped, and cut after three lines
};

// Whether this build draws pictures: that takes Cairo, which there is not on Windows.
bool DrawsPictures();

// The bytes of a file, the same for the same run and picture. All throw std::runtime_error for a
// picture whose legend and caption leave no room for the plot, or that there is no memory for, and
// where no pictures are drawn.
std::string PlotPng(const TuningRun& run, const ProgramValues& values, const PlotPicture& picture);
std::string PlotSvg(const TuningRun& run, const ProgramValues& values, const PlotPicture& picture);
std::string PlotPdf(const TuningRun& run, const ProgramValues& values, const PlotPicture& picture);

}  // namespace tonvane
