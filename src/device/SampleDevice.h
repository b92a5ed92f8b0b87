// A device of 32-bit integers, one channel behind the other, on a platform that moves any number of
// samples from and to one buffer a channel, as integers or floats.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>

#include "device/RingDevice.h"
#include "device/SampleRing.h"

namespace tonvane {

// What the platform's buffers hold, in the byte order of this machine. Full scale is 1.0 and 2^31.
// Captured floats are truncated toward zero; beyond the range of an integer they become its ends,
// or, where they are said to wrap, the lowest integer, +1.0 and what is no number included.
enum class SampleType { integers, floats, wrappingFloats };

class SampleDevice : public RingDevice<SampleRing, 32, false> {
  public:
    static constexpr int32_t mostChannels = 8;  // of a direction

  protected:
    // Rings of so many frames, for a platform that moves `period` frames at a time; none for a
    // direction without channels.
    void openRings(int32_t inputs, int32_t outputs, int32_t frames, int32_t period, int32_t rate);

    // The platform's thread, without lock, memory, wait or system call: moves `frames` frames
    // between the rings and one buffer for each of their channels; nothing without buffers. A null
    // buffer to capture from counts as silence. Captured frames that the ring has no room for are
    // lost; frames to play that it does not hold are silence; both are gaps.
    void captureSamples(std::span<void* const> buffers, SampleType type, int32_t frames);
    void playSamples(std::span<void* const> buffers, SampleType type, int32_t frames);

    std::atomic<bool> running_{false};
};

}  // namespace tonvane
