// One write of a register.
#pragma once

#include "amplifier/WordBytes.h"

namespace tonvane {

struct RegisterWrite {
    int32_t reg;                                     // register number
    std::array<int32_t, mostRegisterWords> words{};  // as many bytes count as the register is long

    bool operator==(const RegisterWrite&) const = default;
};

}  // namespace tonvane
