// Counts heap allocations of the whole test program.
#pragma once

#include <cstdint>

namespace tonvane::tests {

// Calls of operator new since the program's start.
int64_t AllocationCount();

// Makes the next call of operator new fail.
void FailNextAllocation();

}  // namespace tonvane::tests
