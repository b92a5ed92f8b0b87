// What a buffer switch of an ASIO driver moves: captured frames into one ring of 32-bit integers,
// frames to play out of another.
//
// The driver's samples are 32-bit integers or floats of full scale 1.0, both in the byte order of
// this machine; floats are turned into integers, and back, in the driver's own buffers. Of every
// other type nothing is captured or played.
#pragma once

#include <cstdint>
#include <span>

#include "device/GapCount.h"
#include "device/SampleRing.h"

namespace tonvane {

// The numbers that drivers have for the types.
enum class AsioSampleType : int32_t { int32 = 0x12, float32 = 0x13 };

// Truncated toward zero; what a 32-bit integer cannot hold becomes the lowest one, from 1.0 on and
// no number included.
int32_t AsioIntegerOf(float sample);

class AsioSwitch {
  public:
    // The driver's thread, without lock, memory, wait or system call. The driver's buffers of
    // `frames` samples, one for each channel of the ring. Captured frames that the ring has no room
    // for are lost; frames to play that it does not hold are silence.
    void Capture(std::span<void* const> buffers, AsioSampleType type, int32_t frames);
    void Play(std::span<void* const> buffers, AsioSampleType type, int32_t frames);

    SampleRing capture;
    SampleRing play;
    GapCount captureGaps;
    GapCount playGaps;
};

}  // namespace tonvane
