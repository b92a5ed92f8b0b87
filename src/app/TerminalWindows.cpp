#include "app/Terminal.h"

#include <windows.h>

namespace tonvane {

// The null device is one of characters as well, but has no mode.
bool IsTerminal() {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), &mode) != FALSE;
}

}  // namespace tonvane
