// The values of a run as the command line of a golden case sets them.
#pragma once

#include <nlohmann/json.hpp>

#include "files/TargetFile.h"
#include "support/Golden.h"
#include "tuning/ProgramValues.h"

namespace tonvane::tests {

inline void SetGoldenValues(const GoldenCase& golden, ProgramValues& values) {
    values.InputSampleRate = values.FilterSampleRate = GoldenFigures(golden)["inputRate"];
    values.ResponseIsCsv = golden.isCsv;
    values.ResponseFilePath = GoldenPath(golden.response);
    TargetSettings settings;
    LoadTargetFile(GoldenPath(golden.target), settings);
    values.DefaultTargetCurve = settings.curve;
    values.TargetCurveKind = settings.kind;
    values.InitialGainClamp = settings.gainClampDb;
}

}  // namespace tonvane::tests
