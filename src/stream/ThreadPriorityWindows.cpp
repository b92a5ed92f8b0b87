#include <windows.h>

#include "stream/ThreadPriority.h"

namespace tonvane {

void RaiseThreadPriority() {
    ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL);
}

}  // namespace tonvane
