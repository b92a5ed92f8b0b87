// The commands below "link".
#pragma once

#include <memory>

#include "app/LinkSession.h"
#include "commandline/CommandParser.h"

namespace tonvane {

// Single registers, and all of them: read, write, dump, watch.
void AddLinkRegisterCommands(Command& link, const std::shared_ptr<const LinkOptions>& options);

// What belongs together: preset, program, crossover, drc.
void AddLinkGroupCommands(Command& link, const std::shared_ptr<const LinkOptions>& options);

}  // namespace tonvane
