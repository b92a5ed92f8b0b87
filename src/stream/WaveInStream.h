// The stage that reads from the audio device.
#pragma once

#include <atomic>
#include <cstdint>

#include "device/WaveDevice.h"
#include "stream/DspStream.h"

namespace tonvane {

class CWaveInStream : public CDspStream {
  public:
    void Process(const double* /*in*/, double* /*out*/) override {}

    // The samples' width is that of the format, the layout that of the device. False without a
    // device.
    bool Open() override;

    // Reads a block, converts it and pumps it. False, with nothing pumped, when the device has
    // given less, which it does when it is gone.
    bool ReadBlock();

    // Reads frames and throws them away.
    void Discard(int32_t count);

    int32_t blockFrames = 256;
    int32_t bytesPerSample = 0;
    int32_t signShift = 0;  // bits above the sample in a 32-bit word
    double scale = 0.0;     // 2^(1 - bits)
    CWaveDevice* device = nullptr;

    // Of the blocks read since Open, for when the reading thread has ended: the largest magnitude,
    // and the samples at an end of the range.
    double peak = 0.0;
    int64_t clippedSamples = 0;

    // For any thread, from Open on: frames that the device has given, those thrown away included,
    // and whether it has given less than asked for.
    std::atomic<int64_t> framesCaptured{0};
    std::atomic<bool> lost{false};

  private:
    bool read(int32_t count);
    void convert();
};

}  // namespace tonvane
