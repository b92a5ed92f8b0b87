// A measured loudspeaker in place of hardware.
#pragma once

#include <span>

#include "device/simulated/SimulatedWave.h"

namespace tonvane {

// The path through a loudspeaker whose response was measured as one period of a periodic signal.
// In such a period the end runs into the start: what lies in its second half comes ahead of the
// onset as much as late behind it. So the path is that period with its second half in front, and
// has half a period of latency, which the device reports: a measurement with the same period gives
// back every sample.
SimulatedSetup SimulatedSpeaker(std::span<const double> period);

}  // namespace tonvane
