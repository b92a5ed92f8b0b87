// One direction of a WinMM wave device: a unit ring whose units lie with the system.
//
// The system's callback completes units and does nothing else; it takes no lock and no memory. The
// lock here stands between a worker that hands a unit to the system and the owner that closes.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "device/DeviceFaults.h"
#include "device/UnitRing.h"
#include "device/WaveFormat.h"

namespace tonvane {

class WavePipe {
  public:
    // A pipe of the ring, which is not open and outlives it. In `gaps` go moments at which the
    // system had no unit of a running pipe. `onLost` is called on a worker's thread when the system
    // no longer takes a unit.
    WavePipe(UnitRing::Direction direction, UnitRing& ring, GapCount& gaps,
             std::function<void()> onLost);
    ~WavePipe();
    WavePipe(const WavePipe&) = delete;
    WavePipe& operator=(const WavePipe&) = delete;

    // Opens the device that the wave mapper chooses for the format, halted, with a queue of
    // `frames`. Empty, or a sentence that says why not, with the pipe closed. An open pipe refuses.
    std::string Open(const WAVEFORMATEX& format, int32_t frames);

    // Takes all units back from the system and closes the device; returns when the system has said
    // that it is closed. Frees a worker that waits.
    void Close();

    // For an open pipe; nothing for a closed one.
    void Start();
    void Stop();

  private:
    struct System;
    struct Calls;

    void onMessage(uint32_t message);
    void prepare(int32_t unit);
    void submit(int32_t unit);
    std::string openDevice(const WAVEFORMATEX& format);
    [[nodiscard]] std::string refusal(uint32_t error, const WAVEFORMATEX& format) const;

    const UnitRing::Direction direction_;
    UnitRing& ring_;
    GapCount& gaps_;
    const std::function<void()> onLost_;
    const Calls& calls_;
    std::unique_ptr<System> system_;
    std::mutex closing_;
    std::atomic<void*> handle_{nullptr};  // the wave device; the callback clears it on closing
    std::atomic<bool> running_{false};
};

}  // namespace tonvane
