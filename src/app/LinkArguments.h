// The words of the command line for the link commands.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

#include "app/LinkCommand.h"

namespace tonvane {

// --port and --timeout.
void AddLinkOptions(CLI::App& command, LinkOptions& options);

// Adds the command "link" with its subcommands. Parsing one of them stores in `run` what is to be
// done.
void AddLinkCommand(CLI::App& app, std::function<void()>& run);

}  // namespace tonvane
