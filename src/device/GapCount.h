// Gaps in what a worker hands over or takes. A queue that runs empty, or over, is a gap only if the
// worker comes back: one that has ended its run has nothing more to lose.
#pragma once

#include <atomic>
#include <cstdint>

namespace tonvane {

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

}  // namespace tonvane
