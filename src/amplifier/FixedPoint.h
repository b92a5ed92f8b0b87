// The amplifier's fixed-point words.
//
// A coefficient word is a 3.23 number, -4.0 to just under 4.0, in 26 bits of two's complement; a
// threshold word a 2.27 number, 0 to just under 4.0, in 29 bits. The bits above stay zero: they are
// no sign extension. Values beyond the range lose their high bits without notice.
#pragma once

#include <cstdint>

namespace tonvane {

constexpr double coefficientScale = 8388608.0;  // 2^23
constexpr int32_t coefficientMask = 0x3FFFFFF;
constexpr double thresholdScale = 134217728.0;  // 2^27
constexpr int32_t thresholdMask = 0x1FFFFFFF;

// Rounds to the nearest step, ties away from zero, and wraps. NaN and infinities give 0.
int32_t ToCoefWord(double value);
int32_t ToThresholdWord(double value);

// The value that a coefficient word stands for, -4.0 to just under 4.0; bits above the 26 are not
// looked at.
double FromCoefWord(int32_t word);

// The value of a threshold word, 0 to just under 4.0; bits above the 29 are not looked at.
double FromThresholdWord(int32_t word);

// Whether ToCoefWord keeps the value: false for one that wraps, NaN or an infinity.
bool FitsCoefWord(double value);

}  // namespace tonvane
