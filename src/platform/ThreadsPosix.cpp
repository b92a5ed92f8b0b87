#include "platform/Threads.h"

#include <semaphore>

#include <sys/resource.h>
#include <unistd.h>

namespace tonvane {

// On Linux a nice value belongs to a thread.
void RaiseThreadPriority() {
    constexpr int aboveNormal = -5;
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), aboveNormal);
}

struct WakeUp::Semaphore {
    std::counting_semaphore<> tokens;
};

WakeUp::WakeUp(int32_t tokens) : semaphore_(new Semaphore{std::counting_semaphore<>(tokens)}) {}

WakeUp::~WakeUp() = default;

void WakeUp::Release() {
    semaphore_->tokens.release();
}

void WakeUp::Acquire() {
    semaphore_->tokens.acquire();
}

}  // namespace tonvane
