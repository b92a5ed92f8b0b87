// The batch start without a window.
#pragma once

#include <span>
#include <string>

namespace tonvane {

// Runs "-cmd rate response format filter target -noprompt": loads, designs, and writes the filter
// file and the target file at once. Errors and warnings go to standard error and the run goes on;
// the exit code is always 0. On Windows the line as it was typed takes the place of the arguments.
int RunBatchStart(std::span<const std::string> arguments);

}  // namespace tonvane
