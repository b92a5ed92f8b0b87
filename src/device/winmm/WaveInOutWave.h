// The devices that the WinMM wave mapper chooses.
#pragma once

#include "device/RingDevice.h"
#include "device/winmm/WavePipe.h"

namespace tonvane {

class CWaveInOutWave : public UnitDevice {
  public:
    CWaveInOutWave() = default;
    ~CWaveInOutWave() override;

    bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
              void* notify) override;
    void Close() override;
    bool Start() override;
    void Stop() override;

  private:
    WavePipe capturePipe_{UnitRing::Direction::capture, capture_, faults_.captureGaps,
                          [this] { markLost(); }};
    WavePipe playPipe_{UnitRing::Direction::play, play_, faults_.playGaps, [this] { markLost(); }};
};

}  // namespace tonvane
