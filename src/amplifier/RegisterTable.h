// The amplifier's registers by number: how long each is and what it is called.
#pragma once

#include <array>
#include <cstdint>

namespace tonvane {

struct RegisterInfo {
    int32_t length;    // bytes: 0, 1, 4, 8, 16 or 20
    const char* name;  // as the user sees it; empty for a register without a name
};

constexpr int32_t registerCount = 0x78;  // registers 0x00 to 0x77

// Rows 0x00 to 0x77 by register number, then the row of every number beyond the table.
extern const std::array<RegisterInfo, registerCount + 1> RegisterTable;

// The row of a register number; numbers below 0 or above 0x77 give "OUT OF RANGE" with length 0.
const RegisterInfo& LookUpRegister(int32_t number);

// Registers that the system itself writes.
namespace registers {
constexpr int32_t systemControl2 = 0x05;
constexpr int32_t startStopPeriod = 0x1A;
constexpr int32_t oscillatorTrim = 0x1B;
constexpr int32_t equalizerFirst = 0x29;  // seven biquads, 0x29 to 0x2F, left channel
constexpr int32_t drc1AlphaOmega = 0x3B;
constexpr int32_t drc1AttackRelease = 0x3C;
constexpr int32_t drc2AlphaOmega = 0x3E;
constexpr int32_t drc2AttackRelease = 0x3F;
constexpr int32_t drc1Threshold = 0x40;
constexpr int32_t drc2Threshold = 0x43;
constexpr int32_t drcControl = 0x46;
constexpr int32_t crossoverFirst = 0x58;  // four biquads, 0x58 to 0x5B, left channel
constexpr int32_t drc1OutWeight = 0x70;
constexpr int32_t drc2OutWeight = 0x71;
}  // namespace registers

}  // namespace tonvane
