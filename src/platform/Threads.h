// Threads of audio: their priority, and what wakes them.
#pragma once

#include <cstdint>
#include <memory>

namespace tonvane {

// Puts the calling thread a little above normal. Nothing happens where the user may not do that.
void RaiseThreadPriority();

// A counting semaphore: a worker waits for tokens, a device thread hands them out.
class WakeUp {
  public:
    explicit WakeUp(int32_t tokens);
    ~WakeUp();
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    // Any thread, a callback's included: one call of the system at most, no lock, no memory.
    void Release();

    // Waits for a token and takes it.
    void Acquire();

  private:
    struct Semaphore;
    std::unique_ptr<Semaphore> semaphore_;
};

}  // namespace tonvane
