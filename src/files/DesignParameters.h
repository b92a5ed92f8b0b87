// The design parameter file: all ten target curves, the choice among them and the gain clamp.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "design/TargetRecord.h"

namespace tonvane {

constexpr int32_t curveCount = 10;

struct DesignParameters {
    static constexpr int32_t defaultGainIndex = 6;

    int32_t targetCurveIndex = 0;          // 0 to 9
    int32_t gainIndex = defaultGainIndex;  // minus the gain clamp in dB; 0 to 12, but not checked
    std::array<TargetRecord, curveCount> curves{};
};

// Reads a file. What is missing, the whole file included, has its default: curve 0, gain index 6,
// and for each point that of `defaultCurve`. The curve's index is clamped to 0 to 9.
DesignParameters LoadDesignParameterFile(const std::string& path, const TargetRecord& defaultCurve);

// Writes the parameters into a file key by key; other keys of an existing file stay. The reason of
// a failure, with the file as it was.
std::optional<std::string> SaveDesignParameterFile(const std::string& path,
                                                   const DesignParameters& parameters);

}  // namespace tonvane
