// Whether a captured periodic signal has kept its step: a device that loses or repeats frames
// shifts all that comes behind them.
#pragma once

#include <cstdint>
#include <span>

namespace tonvane {

// By how many frames a part of the capture is out of step with the rest; 0 when none is. The
// capture is whole periods of a signal of `period` samples, a power of two for which there are
// transform tables; part of the first and of the last may be silence.
//
// Every stretch of 2048 samples is looked for in the period in the middle. It is out of step when
// it is found elsewhere than in its own place, with less than 5 % of its power left over and less
// than a quarter of what its own place leaves. So neither noise, an echo nor clocks that drift by
// up to 8 frames within the capture are a shift; and noise of more than those 5 % hides one.
int32_t FindPeriodShift(std::span<const double> capture, int32_t period);

}  // namespace tonvane
