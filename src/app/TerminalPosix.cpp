#include <unistd.h>

#include "app/Terminal.h"

namespace tonvane {

bool IsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

}  // namespace tonvane
