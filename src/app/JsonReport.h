// The report of a design as JSON.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "tuning/DesignReport.h"

namespace tonvane {

// An object with the figures, the sections with their words (as hexadecimal texts), the curves on
// the comparison grid and the warnings. Figures that are no numbers are null.
std::string FormatJsonReport(const DesignReport& report);

// An object with the sections alone, decoded from their words (five each).
std::string FormatJsonSections(std::span<const int32_t> words, std::optional<int32_t> sampleRate);

}  // namespace tonvane
