// A measurement for a person: watched, judged, and refused when it is not good.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/DeviceChoice.h"
#include "device/WaveDevice.h"
#include "stream/StreamEngine.h"
#include "tuning/TuningRun.h"

namespace tonvane {

struct MeasurementReport {
    std::string device;
    int32_t sampleRate = 0;  // Hz
    int32_t periods = 0;     // averaged
    int32_t delaySamples = 0;
    int32_t polarity = 0;  // +1, -1; 0 for unknown
    int32_t cutoffHz = 0;
    double peakDb = 0.0;         // of the capture, dB of full scale
    int64_t clippedSamples = 0;  // at an end of the capture's range
    std::vector<std::string> warnings;
};

// How long a device may deliver nothing, the engine's own waits, and how long the device may take
// to be opened and to be closed.
struct RunLimits {
    std::chrono::milliseconds delivery{10000};
    CStreamEngine::Intervals intervals{};
    std::chrono::milliseconds opening = delivery;
    std::chrono::milliseconds closing = usualClosing;

    static constexpr std::chrono::milliseconds usualClosing{4000};
};

// Measures through a device that is closed and called `name`, at the run's design rate, and makes
// the result the response of the run; the device is closed again. Throws InputError, with no
// response in the run, when the device does not open, is lost, stalls or has had an xrun, and when
// the capture is silent; Interrupted for Ctrl-C. Such an error is printed ahead of the closing, and
// a device that takes longer than it may ends the program (DeviceGuard).
MeasurementReport MeasureResponse(CWaveDevice& device, const std::string& name,
                                  const RunLimits& limits, TuningRun& run,
                                  const ProgramValues& values);

// Chooses the device and measures into a run that has been made for these values: sets its rates
// and its response. The rate is in Hz; without one the device's only one, or the values'. Prints
// what it does.
MeasurementReport MeasureInto(TuningRun& run, ProgramValues& values, const DeviceOptions& device,
                              std::optional<int32_t> rate);

// The report as text of some lines for a terminal, and as JSON.
std::string SummaryText(const MeasurementReport& report);
std::string FormatJsonReport(const MeasurementReport& report);

}  // namespace tonvane
