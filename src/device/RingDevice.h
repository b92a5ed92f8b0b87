// What devices have in common that put a queue for each direction between the workers and the
// platform's thread.
#pragma once

#include <string>

#include "device/DeviceFaults.h"
#include "device/UnitRing.h"
#include "device/WaveDevice.h"

namespace tonvane {

// `Ring` is UnitRing or SampleRing.
template <typename Ring, int bits, bool interleaved>
class RingDevice : public CWaveDevice {
  public:
    int Read(void* data, int frames) override {
        faults_.captureGaps.Settle();
        return capture_.Read(static_cast<typename Ring::Data*>(data), frames);
    }
    int Write(const void* data, int frames) override {
        faults_.playGaps.Settle();
        return play_.Write(static_cast<const typename Ring::Data*>(data), frames);
    }
    void FlushOutput() override { play_.FlushOutput(); }
    void WaitFilled() override { play_.WaitFilled(); }
    void WaitEmpty() override { play_.WaitEmpty(); }
    bool IsInterleaved() override { return interleaved; }
    int BitsPerSample() override { return bits; }
    int Latency() override { return 0; }

    [[nodiscard]] int32_t xruns() const override { return faults_.xruns(); }
    [[nodiscard]] bool isLost() const override { return faults_.isLost; }
    [[nodiscard]] std::string refusal() const override { return faults_.refusal; }

  protected:
    // Frees both workers. Any thread.
    void closeRings() {
        capture_.Close();
        play_.Close();
    }

    // The platform serves the device no longer. Any thread.
    void markLost() {
        faults_.isLost = true;
        closeRings();
    }

    Ring capture_;
    Ring play_;
    DeviceFaults faults_;
};

// Of platforms that move units of 16-bit frames.
using UnitDevice = RingDevice<UnitRing, 16, true>;

}  // namespace tonvane
