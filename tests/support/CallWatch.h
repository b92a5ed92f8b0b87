// Sees what code on a callback thread must not do: system calls, mutexes, allocations.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace tonvane::tests {

struct WatchedCalls {
    int32_t systemCall = -1;  // the number of the first one; -1 for none
    int32_t locks = 0;        // calls of pthread_mutex_lock
    int64_t allocations = 0;  // calls of operator new
};

// What a function does on this thread. The first system call is not executed (it returns an error);
// those behind it are. Nothing where this kernel or a sanitizer of this build is in the way.
std::optional<WatchedCalls> Watch(const std::function<void()>& function);

}  // namespace tonvane::tests
