#include "stream/ThreadPriority.h"

#include <windows.h>

namespace tonvane {

void RaiseThreadPriority() {
    ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL);
}

}  // namespace tonvane
