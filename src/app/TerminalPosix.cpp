#include "app/Terminal.h"

#include <unistd.h>

namespace tonvane {

bool IsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

}  // namespace tonvane
