#include "support/CallWatch.h"

#include <atomic>
#include <cerrno>
#include <csignal>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <ucontext.h>

#include "support/Allocations.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TONVANE_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TONVANE_SANITIZED
#endif
#endif

namespace {

// The kernel looks at it at every system call of the thread.
volatile char selector = 0;
constexpr char allow = 0;
constexpr char block = 1;

volatile std::sig_atomic_t firstCall = -1;
thread_local bool isWatched = false;
std::atomic<int32_t> locks{0};

void onSystemCall(int /*signal*/, siginfo_t* information, void* context) {
    selector = allow;
    firstCall = information->si_syscall;
    static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_RAX] = -EINTR;
}

}  // namespace

#ifndef TONVANE_SANITIZED

// In the place of the C library's, for the whole program.
extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    using Lock = int (*)(pthread_mutex_t*);
    static std::atomic<Lock> next{nullptr};
    Lock lock = next.load();
    if (lock == nullptr) {
        lock = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
        next = lock;
    }
    if (isWatched) {
        ++locks;
    }
    return lock(mutex);
}

#endif

namespace tonvane::tests {

std::optional<WatchedCalls> Watch(const std::function<void()>& function) {
#ifdef TONVANE_SANITIZED
    return std::nullopt;
#endif
    struct sigaction action {};
    action.sa_sigaction = &onSystemCall;
    action.sa_flags = SA_SIGINFO;
    struct sigaction before {};
    sigaction(SIGSYS, &action, &before);
    if (prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, 0, 0, &selector) != 0) {
        return std::nullopt;
    }
    firstCall = -1;
    locks = 0;
    const int64_t allocated = AllocationCount();
    isWatched = true;
    selector = block;
    function();
    selector = allow;
    isWatched = false;
    prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_OFF, 0, 0, 0);
    sigaction(SIGSYS, &before, nullptr);
    return WatchedCalls{static_cast<int32_t>(firstCall), locks, AllocationCount() - allocated};
}

}  // namespace tonvane::tests
