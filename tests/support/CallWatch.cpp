#include "support/CallWatch.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <new>
#include <optional>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

namespace {

std::atomic<int64_t> allocations{0};
std::atomic<bool> failNext{false};

void* allocate(std::size_t size) {
    ++allocations;
    return failNext.exchange(false) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size) {
    if (void* memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tonvane::tests {

namespace {

// The kernel looks at it at every system call of the thread.
volatile char selector = 0;
constexpr char allow = 0;
constexpr char block = 1;

volatile std::sig_atomic_t firstCall = -1;
thread_local bool isWatched = false;
std::atomic<int32_t> locks{0};

struct WatchedCalls {
    int32_t systemCall = -1;  // the number of the first one; -1 for none
    int32_t locks = 0;        // calls of pthread_mutex_lock
    int64_t allocations = 0;  // calls of operator new
};

void onSystemCall(int /*signal*/, siginfo_t* information, void* context) {
    selector = allow;
    firstCall = information->si_syscall;
    static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_RAX] = -EINTR;
}

// What a function does on this thread. The first system call is not executed (it returns an error);
// those behind it are. Nothing where calls cannot be seen.
std::optional<WatchedCalls> watch(const std::function<void()>& function) {
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

}  // namespace

#ifndef TONVANE_SANITIZED

// In the place of the C library's, for the whole program.
extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    using Lock = int (*)(pthread_mutex_t*);
    static std::atomic<Lock> next{nullptr};
    if (next.load() == nullptr) {
        next = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    }
    locks += isWatched ? 1 : 0;
    return next.load()(mutex);
}

#endif

int64_t AllocationCount() {
    return allocations;
}

void FailNextAllocation() {
    failNext = true;
}

void ExpectQuiet(const std::function<void()>& function) {
    std::mutex mutex;
    const auto loud = watch([&] {
        const std::lock_guard lock(mutex);
        ::operator delete(::operator new(1));
        syscall(SYS_gettid);
    });
    if (!loud) {
        GTEST_SKIP() << "this kernel or this build does not show system calls";
    }
    EXPECT_EQ(loud->systemCall, SYS_gettid);
    EXPECT_EQ(loud->locks, 1);
    EXPECT_EQ(loud->allocations, 1);
    const auto seen = watch(function);
    EXPECT_EQ(seen->systemCall, -1);
    EXPECT_EQ(seen->locks, 0);
    EXPECT_EQ(seen->allocations, 0);
}

}  // namespace tonvane::tests
