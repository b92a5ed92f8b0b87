// The line ends of text files that other programs of this computer read.
#pragma once

#include <string>

namespace tonvane {

// The text with LF turned into what ends a line on this system: CR LF on Windows, LF elsewhere.
std::string WithSystemLineEnds(std::string text);

}  // namespace tonvane
