#include "app/ProgramArguments.h"

namespace tonvane {

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

}  // namespace tonvane
