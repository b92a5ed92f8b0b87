// The commands for a person that play and capture.
//
// They print what they do on standard output and leave the device closed, however they end. They
// throw InputError for what cannot be served and Interrupted for Ctrl-C; nothing is written then.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/DeviceChoice.h"
#include "app/Measurement.h"

namespace tonvane {

struct MeasureOptions {
    DeviceOptions device;
    std::optional<int32_t> rate;        // Hz; without one the device's only one, or 48000
    std::string output;                 // speaker response file
    std::optional<std::string> report;  // JSON report
};

void MeasureCommand(const MeasureOptions& options);

// Measures into a run that has been made for these values: sets its rates and its response.
MeasurementReport MeasureInto(TuningRun& run, ProgramValues& values, const DeviceOptions& device,
                              std::optional<int32_t> rate);

struct PlayOptions {
    DeviceOptions device;
    std::string path;   // wave file
    double from = 0.0;  // seconds
};

void PlayCommand(const PlayOptions& options);

}  // namespace tonvane
