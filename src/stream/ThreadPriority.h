// The priority of the thread that calls.
#pragma once

namespace tonvane {

// Puts the thread a little above normal, for audio. Nothing happens where the user may not do that.
void RaiseThreadPriority();

}  // namespace tonvane
