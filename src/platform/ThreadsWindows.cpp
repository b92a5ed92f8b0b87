#include "platform/Threads.h"

#include <climits>
#include <system_error>

#include <windows.h>

namespace tonvane {

void RaiseThreadPriority() {
    ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL);
}

// The system's semaphore: that of the library takes a lock here to hand out a token.
struct WakeUp::Semaphore {
    explicit Semaphore(LONG tokens) : handle(CreateSemaphoreA(nullptr, tokens, LONG_MAX, nullptr)) {
        if (handle == nullptr) {
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
        }
    }
    ~Semaphore() { CloseHandle(handle); }
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    HANDLE handle;
};

WakeUp::WakeUp(int32_t tokens) : semaphore_(std::make_unique<Semaphore>(tokens)) {}

WakeUp::~WakeUp() = default;

void WakeUp::Release() {
    ReleaseSemaphore(semaphore_->handle, 1, nullptr);
}

void WakeUp::Acquire() {
    WaitForSingleObject(semaphore_->handle, INFINITE);
}

}  // namespace tonvane
