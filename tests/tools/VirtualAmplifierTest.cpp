// What the virtual amplifier remarks on.
#include <gmock/gmock.h>

#include "virtual-amplifier/RegisterFile.h"

namespace tonvane::virtualamp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Bytes = std::vector<uint8_t>;

TEST(RegisterFile, TakesWhatIsOddAndSaysSo) {
    RegisterFile registers;
    EXPECT_THAT(registers.write(0x51, Bytes{9, 9}), ElementsAre("2 bytes for a register of 8"));
    EXPECT_THAT(registers.read(0x51, 4), ElementsAre(9, 9, 0, 0));
    EXPECT_THAT(registers.write(0x07, Bytes{1, 2}), ElementsAre("2 bytes for a register of 1"));
    EXPECT_THAT(registers.read(0x07, 2), ElementsAre(1, 0));
    EXPECT_THAT(registers.write(0x55, Bytes{1}), ElementsAre("1 bytes for a register of 0"));
    EXPECT_THAT(registers.write(0x78, Bytes{1}), ElementsAre("there is no such register"));
    EXPECT_THAT(registers.read(0xFF, 2), ElementsAre(0, 0));
}

TEST(RegisterFile, ReportsFiltersAndDynamicsThatChangeWhileTheAudioRuns) {
    RegisterFile registers;
    const auto isReported = [&](int32_t reg) {
        return !registers.write(reg, registers.read(reg, LookUpRegister(reg).length)).empty();
    };
    for (const int32_t reg : {0x29, 0x36, 0x58, 0x5F, 0x3B, 0x40, 0x43, 0x46}) {
        EXPECT_TRUE(isReported(reg)) << reg;
    }
    for (const int32_t reg : {0x05, 0x07, 0x1B, 0x3A, 0x50, 0x57, 0x70}) {
        EXPECT_FALSE(isReported(reg)) << reg;
    }
    registers.write(0x05, Bytes{0x40});
    EXPECT_TRUE(registers.isShutDown());
    EXPECT_FALSE(isReported(0x29));
    registers.write(0x05, Bytes{0x00});
    EXPECT_FALSE(registers.isShutDown());
    EXPECT_TRUE(isReported(0x29));
}

}  // namespace
}  // namespace tonvane::virtualamp
