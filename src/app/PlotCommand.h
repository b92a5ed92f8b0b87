// The plot command for a person: a response in, a picture of its design out.
#pragma once

#include <string>

#include "app/DesignCommand.h"
#include "app/PlotOptions.h"

namespace tonvane {

// Throws InputError for an unknown kind of picture, a size or a curve that there is not, and where
// pictures are not drawn.
void CheckPlotOptions(const PlotOptions& options);

// The bytes of the picture file. Throws InputError like the check, and for a picture too small for
// what is in it.
std::string PlotBytes(const PlotOptions& options, const FinishedDesign& design);

// The same picture as an <svg> element for a page; `output` is not looked at.
// Empty where pictures are not drawn.
std::string PlotElement(const PlotOptions& options, const FinishedDesign& design);

// Designs for design.response and writes the picture; of `design` only what concerns the response,
// the target and the gain clamp is looked at. Throws InputError for input that cannot be used or
// an output that cannot be written, with the output as it was.
void RunPlotCommand(const DesignOptions& design, const PlotOptions& plot);

}  // namespace tonvane
