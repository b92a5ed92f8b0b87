// The stage that writes to the audio device.
#pragma once

#include <atomic>
#include <cstdint>

#include "device/WaveDevice.h"
#include "stream/DspStream.h"

namespace tonvane {

// Its output block is its input block, so that a stage downstream sees what was played.
class CWaveOutStream : public CDspStream {
  public:
    // Samples become integers of the device's width: clipped to its range, half a step added and
    // the fraction cut off, so that positive values round to nearest and negative ones are up to
    // one step nearer to zero. -1.0 is the most negative value, and so exact.
    void Process(const double* in, double* out) override;

    // Takes the device's layout and width over. False without a device.
    bool Open() override;
    void Close() override;

    int32_t blockFrames = 256;
    int32_t bytesPerSample = 0;
    double scale = 0.0;    // 2^(bits - 1)
    double maximum = 0.0;  // largest and smallest integer
    double minimum = 0.0;
    CWaveDevice* device = nullptr;

    // For any thread, from Open on: frames that the device has taken, and whether it has refused
    // some, which it does when it is gone.
    std::atomic<int64_t> framesPlayed{0};
    std::atomic<bool> lost{false};

  private:
    void store(const double* in, int32_t count, unsigned char* bytes) const;
};

}  // namespace tonvane
