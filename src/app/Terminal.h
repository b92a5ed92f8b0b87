// Whether a person watches the output.
#pragma once

namespace tonvane {

// Whether standard output goes to a terminal.
bool IsTerminal();

}  // namespace tonvane
