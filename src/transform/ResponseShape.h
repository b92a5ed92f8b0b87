// What all impulse responses have in common, and the periods that they are measured with.
#pragma once

#include <cstdint>

namespace tonvane {

constexpr int32_t responseLength = 32768;  // samples
constexpr int32_t responseBins = responseLength / 2 + 1;

// Samples ahead of a response's onset.
constexpr int32_t onsetLead = 32;

}  // namespace tonvane
