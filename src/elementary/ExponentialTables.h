// What the exponential and the logarithm look up, made by the compiler from the series.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "elementary/DoubleDouble.h"

namespace tonvane::elementary {

inline constexpr int32_t powerSteps = 64;
inline constexpr int32_t logSteps = 128;
inline constexpr int32_t firstLogStep = 90;  // of 128: numbers from about 0.707 to 1.414
inline constexpr int32_t lastLogStep = 182;

// 2^(i/64).
consteval std::array<DoubleDouble, powerSteps> PowersOfTwo() {
    std::array<DoubleDouble, powerSteps> table{};
    for (int32_t i = 0; i < powerSteps; ++i) {
        const DoubleDouble x = naturalLogOf2 * DoubleDouble{i / 64.0, 0.0};
        DoubleDouble term{1.0, 0.0};
        DoubleDouble sum = term;
        for (int32_t n = 1; n < 28; ++n) {
            term = term * x / DoubleDouble{static_cast<double>(n), 0.0};
            sum = sum + term;
        }
        table[static_cast<size_t>(i)] = sum;
    }
    return table;
}

struct LogStep {
    DoubleDouble log;
    double inverse;  // 1/c to the nearest double
};

// ln(c) for c = i/128, i from firstLogStep, by the series of the inverse hyperbolic tangent.
consteval std::array<LogStep, lastLogStep - firstLogStep + 1> Logarithms() {
    std::array<LogStep, lastLogStep - firstLogStep + 1> table{};
    for (int32_t i = firstLogStep; i <= lastLogStep; ++i) {
        const DoubleDouble z = DoubleDouble{static_cast<double>(i - logSteps), 0.0} /
                               DoubleDouble{static_cast<double>(i + logSteps), 0.0};
        DoubleDouble power = z + z;
        DoubleDouble sum = power;
        for (int32_t n = 3; n < 46; n += 2) {
            power = power * z * z;
            sum = sum + power / DoubleDouble{static_cast<double>(n), 0.0};
        }
        table[static_cast<size_t>(i - firstLogStep)] = {sum, static_cast<double>(logSteps) / i};
    }
    return table;
}

inline constexpr auto powerTable = PowersOfTwo();
inline constexpr auto logTable = Logarithms();

}  // namespace tonvane::elementary
