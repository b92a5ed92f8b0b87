// The words that a program was started with.
#pragma once

#include <string>
#include <vector>

namespace tonvane {

// Without the program's own name; what main was given. On Windows they are taken from the command
// line in UTF-16 instead and turned into UTF-8, which all paths in the program are in.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

}  // namespace tonvane
