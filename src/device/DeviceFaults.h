// What a device keeps of its faults, to be asked for by the contract of CWaveDevice.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace tonvane {

// Gaps in what a worker hands over or takes. A queue that runs empty, or over, is a gap only if the
// worker comes back: one that has ended its run has nothing more to lose.
class GapCount {
  public:
    // Device thread: the worker was too late.
    void Note() { pending_ = true; }

    // Worker, at every call: it has come back.
    void Settle() {
        if (pending_.load() && pending_.exchange(false)) {
            ++count_;
        }
    }

    // Any thread: a gap of the platform.
    void Add() { ++count_; }

    void Reset() {
        pending_ = false;
        count_ = 0;
    }

    [[nodiscard]] int32_t count() const { return count_.load(); }

  private:
    std::atomic<bool> pending_{false};
    std::atomic<int32_t> count_{0};
};

struct DeviceFaults {
    GapCount captureGaps;
    GapCount playGaps;
    std::atomic<bool> isLost{false};
    std::string refusal;  // owner's thread

    // At every Open.
    void Reset() {
        captureGaps.Reset();
        playGaps.Reset();
        isLost = false;
        refusal.clear();
    }

    [[nodiscard]] int32_t xruns() const { return captureGaps.count() + playGaps.count(); }
};

}  // namespace tonvane
