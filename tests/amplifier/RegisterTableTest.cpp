// The amplifier's register map.
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/RegisterTable.h"

namespace tonvane {
namespace {

using testing::ElementsAre;

TEST(RegisterTable, EveryRunOfRegistersHasItsLength) {
    // The last register of each run and the run's length in bytes.
    const std::pair<int32_t, int32_t> runs[] = {
        {0x1F, 1}, {0x28, 4}, {0x36, 20}, {0x3A, 4}, {0x40, 8}, {0x42, 4},  {0x43, 8},
        {0x50, 4}, {0x52, 8}, {0x54, 16}, {0x55, 0}, {0x57, 4}, {0x5F, 20}, {0x77, 4}};
    int32_t number = 0;
    for (const auto& [last, length] : runs) {
        for (; number <= last; ++number) {
            EXPECT_EQ(LookUpRegister(number).length, length) << number;
        }
    }
    EXPECT_EQ(number, registerCount);
}

TEST(RegisterTable, NamesStandAtTheirNumbers) {
    const auto names = [](const std::vector<int32_t>& numbers) {
        std::vector<std::string> found;
        for (const int32_t number : numbers) {
            found.emplace_back(LookUpRegister(number).name);
        }
        return found;
    };
    EXPECT_THAT(names({0x00, 0x07, 0x0B, 0x0E, 0x14, 0x25, 0x36, 0x55, 0x5F, 0x6F, 0x73, 0x77}),
                ElementsAre("Clock Control", "Master Vol", "", "Vol Configuration",
                            "IC delay chan 4", "PWM Mux", "PEQ Coef R6", "UnDocumented!!",
                            "BIQ for DRC2 - R1", "", "In: [L-L]", "In: [R-R]"));
    EXPECT_THAT(names({0x78, 0xFF, -1, std::numeric_limits<int32_t>::min()}),
                testing::Each("OUT OF RANGE"));
    EXPECT_EQ(LookUpRegister(0x78).length, 0);
}

}  // namespace
}  // namespace tonvane
