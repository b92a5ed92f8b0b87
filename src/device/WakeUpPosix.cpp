#include "device/WakeUp.h"

#include <semaphore>

namespace tonvane {

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
