// The devices that the WinMM wave mapper chooses: 16 bits, interleaved, in units of 1024 frames.
#pragma once

#include <atomic>
#include <string>

#include "device/DeviceFaults.h"
#include "device/WaveDevice.h"
#include "device/winmm/WavePipe.h"

namespace tonvane {

class CWaveInOutWave : public CWaveDevice, public DeviceFaults {
  public:
    CWaveInOutWave() = default;
    ~CWaveInOutWave() override;

    bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
              void* notify) override;
    void Close() override;
    bool Start() override;
    void Stop() override;
    int Read(void* data, int frames) override;
    int Write(const void* data, int frames) override;
    void FlushOutput() override { play_.ring.FlushOutput(); }
    void WaitFilled() override { play_.ring.WaitFilled(); }
    void WaitEmpty() override { play_.ring.WaitEmpty(); }
    bool IsInterleaved() override { return true; }
    int BitsPerSample() override { return 16; }
    int Latency() override { return 0; }

    [[nodiscard]] int32_t xruns() const override { return capture_.gaps() + play_.gaps(); }
    [[nodiscard]] bool isLost() const override { return lost_; }
    [[nodiscard]] std::string refusal() const override { return refusal_; }

  private:
    void lose();

    std::string refusal_;
    std::atomic<bool> lost_{false};
    WavePipe capture_{UnitRing::Direction::capture, [this] { lose(); }};
    WavePipe play_{UnitRing::Direction::play, [this] { lose(); }};
};

}  // namespace tonvane
