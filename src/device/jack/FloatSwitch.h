// What a device thread of float samples does in its callback: captured frames go into one ring of
// 32-bit integers, frames to play come out of another.
//
// Full scale is 1.0 and 2^31. Captured samples are truncated, and cut at the ends of the range.
#pragma once

#include <cstdint>
#include <span>

#include "device/GapCount.h"
#include "device/SampleRing.h"

namespace tonvane {

int32_t SampleOfFloat(float sample);

class FloatSwitch {
  public:
    // Device thread, without lock, memory, wait or system call: moves `frames` frames. A buffer for
    // each channel of the rings; a null capture buffer counts as silence. Captured frames that the
    // ring has no room for are lost; frames to play that it does not hold are silence.
    void Exchange(std::span<const float* const> captured, std::span<float* const> played,
                  int32_t frames);

    SampleRing capture;
    SampleRing play;
    GapCount captureGaps;
    GapCount playGaps;
};

}  // namespace tonvane
