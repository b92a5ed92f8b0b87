// The report of a design as JSON.
#pragma once

#include <string>

#include "tuning/DesignReport.h"

namespace tonvane {

// An object with the figures, the sections with their words (as hexadecimal texts), the curves on
// the comparison grid and the warnings. Figures that are no numbers are null.
std::string FormatJsonReport(const DesignReport& report);

}  // namespace tonvane
