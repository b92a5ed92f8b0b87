// The start values of the amplifier, sent as one list by the Set1 command.
#pragma once

#include <array>

#include "amplifier/RegisterWrite.h"

namespace tonvane {

using RegisterPreset = RegisterWrite;

// Raw contents in the order of sending. The mixers go straight through, the first band's output
// weights are 1, the second's 0.
extern const std::array<RegisterPreset, 18> RegisterPresets;

}  // namespace tonvane
