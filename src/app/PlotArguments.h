// The words of the command line for plots.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

#include "app/DesignCommand.h"

namespace tonvane {

// The response, in the group of what a response can come from, and what it is designed for: --rate,
// --channel, --strict, --target, --gain-clamp.
void AddResponseOptions(CLI::App& command, CLI::App& source, DesignOptions& options);

// --plot for the design command, with --show, --size, --scale and --caption.
void AddDesignPlot(CLI::App& command, DesignOptions& options);

// Adds the command "plot". Parsing it stores in `run` what is to be done.
void AddPlotCommand(CLI::App& app, std::function<void()>& run);

}  // namespace tonvane
