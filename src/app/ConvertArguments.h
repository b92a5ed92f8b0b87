// The words of the command line for the convert command and for what it shares with design.
#pragma once

#include <functional>
#include <vector>

#include <CLI/CLI.hpp>

#include "app/Exports.h"

namespace tonvane {

// --channel and --strict.
void AddInputOptions(CLI::App& command, std::optional<int32_t>& channel, bool& strict);

// --export KIND=FILE, as often as wanted.
void AddExportOption(CLI::App& command, std::vector<Export>& exports);

// Adds the command "convert". Parsing it stores in `run` what is to be done.
void AddConvertCommand(CLI::App& app, std::function<void()>& run);

}  // namespace tonvane
