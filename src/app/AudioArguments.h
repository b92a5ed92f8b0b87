// The words of the command line for the commands that play and capture.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

#include "app/DeviceChoice.h"

namespace tonvane {

// --device and --timeout; the latter under another name where that one is taken.
void AddDeviceOptions(CLI::App& command, DeviceOptions& options,
                      const char* timeoutName = "--timeout");

// Adds the commands "devices", "measure" and "play". Parsing one of them stores in `run` what is to
// be done.
void AddAudioCommands(CLI::App& app, std::function<void()>& run);

}  // namespace tonvane
