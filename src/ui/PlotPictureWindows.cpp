#include "ui/PlotPicture.h"

#include <stdexcept>

namespace tonvane {

namespace {

[[noreturn]] void refuse() {
    throw std::runtime_error("pictures of plots are not drawn on Windows");
}

}  // namespace

bool DrawsPictures() {
    return false;
}

std::string PlotPng(const TuningRun& /*run*/, const ProgramValues& /*values*/,
                    const PlotPicture& /*picture*/) {
    refuse();
}

std::string PlotSvg(const TuningRun& /*run*/, const ProgramValues& /*values*/,
                    const PlotPicture& /*picture*/) {
    refuse();
}

std::string PlotPdf(const TuningRun& /*run*/, const ProgramValues& /*values*/,
                    const PlotPicture& /*picture*/) {
    refuse();
}

}  // namespace tonvane
