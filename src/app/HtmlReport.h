// The report of a design as one page that needs nothing else.
#pragma once

#include <string>
#include <string_view>

#include "tuning/DesignReport.h"

namespace tonvane {

// The files of the design; an empty target stands for a flat one.
struct ReportNames {
    std::string response;
    std::string target;
    std::string filters;
};

// HTML with the verdict, the plot, the figures, the curves and the sections. plotSvg is an <svg>
// element that is taken as it is; without one the plot is left out. All other texts are escaped.
std::string HtmlReport(const DesignReport& report, const ReportNames& names,
                       std::string_view plotSvg);

}  // namespace tonvane
