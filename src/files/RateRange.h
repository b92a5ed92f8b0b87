// Sample rates that a person may ask for.
#pragma once

#include <cstdint>

namespace tonvane {

constexpr int32_t lowestRate = 8000;     // Hz
constexpr int32_t highestRate = 192000;  // Hz
constexpr const char* usableRates = "8000 to 192000 Hz";

constexpr bool IsUsableRate(int64_t rate) {
    return rate >= lowestRate && rate <= highestRate;
}

}  // namespace tonvane
