// Sees what code on a callback thread must not do: system calls, mutexes, heap allocations.
#pragma once

#include <cstdint>
#include <functional>

namespace tonvane::tests {

// Calls of operator new since the program's start.
int64_t AllocationCount();

// Makes the next call of operator new fail.
void FailNextAllocation();

// Expects that a function does none of them on this thread, and that a watch sees what does; skips
// the test where this kernel or a sanitizer of this build is in the way.
void ExpectQuiet(const std::function<void()>& function);

}  // namespace tonvane::tests
