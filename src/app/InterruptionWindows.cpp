#include "app/Interruption.h"

#include <atomic>

#include <windows.h>

namespace tonvane {

namespace {

// The handler runs on a thread of the system's and reaches nothing but what is static.
std::atomic<bool> interrupted{false};

// What is not taken here goes to the system's own handler, which ends the program.
BOOL WINAPI markInterrupt(DWORD event) {
    const bool isCtrlC = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    return isCtrlC && !interrupted.exchange(true) ? TRUE : FALSE;
}

}  // namespace

InterruptMark::InterruptMark() {
    interrupted = false;
    ::SetConsoleCtrlHandler(markInterrupt, TRUE);
}

InterruptMark::~InterruptMark() {
    ::SetConsoleCtrlHandler(markInterrupt, FALSE);
}

bool InterruptMark::isSet() {
    return interrupted;
}

}  // namespace tonvane
