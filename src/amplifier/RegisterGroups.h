// The groups of registers that are programmed together, each as the list of its writes in order.
// Every group is meant to be written while the amplifier is shut down.
#pragma once

#include <span>
#include <vector>

#include "amplifier/AmplifierSettings.h"
#include "amplifier/RegisterWrite.h"

namespace tonvane {

// The equalizer's sections of the left channel. `designed` has five words for each of the seven, or
// is empty when there is no design: nothing is written then. With Biq off they are unity sections.
std::vector<RegisterWrite> EqualizerGroup(bool biqEnabled, std::span<const int32_t> designed);

// The two sections and the output weight of each band. With Split on the first path gets the high
// band and the second the low one; with Split off the first passes everything, the second nothing.
std::vector<RegisterWrite> CrossoverGroup(const AmplifierSettings& settings);

// The enable bits, then the registers of each DRC that is on.
std::vector<RegisterWrite> DrcGroup(const AmplifierSettings& settings);

// The three registers of a DRC, index 0 or 1.
std::vector<RegisterWrite> DrcRegisters(const AmplifierSettings& settings, int32_t index);

// RegisterPresets, then the three groups with everything off.
std::vector<RegisterWrite> StartValues(std::span<const int32_t> designed);

}  // namespace tonvane
