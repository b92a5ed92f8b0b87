#include "stream/ThreadPriority.h"

#include <sys/resource.h>
#include <unistd.h>

namespace tonvane {

namespace {

constexpr int aboveNormal = -5;

}  // namespace

// On Linux a nice value belongs to a thread.
void RaiseThreadPriority() {
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), aboveNormal);
}

}  // namespace tonvane
