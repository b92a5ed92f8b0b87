// The amplifier's register map, and registers as people type and read them.
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"

namespace tonvane {
namespace {

TEST(RegisterTable, EveryRunOfRegistersHasItsLength) {
    // The last register of each run and the run's length in bytes.
    const std::pair<int32_t, int32_t> runs[] = {
        {0x1F, 1}, {0x28, 4},  {0x36, 20}, {0x3A, 4}, {0x40, 8},  {0x42, 4}, {0x43, 8}, {0x50, 4},
        {0x52, 8}, {0x54, 16}, {0x55, 0},  {0x57, 4}, {0x5F, 20}, {0x77, 4}, {0x79, 0}};
    int32_t number = 0;
    for (const auto& [last, length] : runs) {
        for (; number <= last; ++number) {
            EXPECT_EQ(LookUpRegister(number).length, length) << number;
        }
    }
}

TEST(RegisterTable, NamesStandAtTheirNumbers) {
    const std::pair<int32_t, const char*> names[] = {
        {0x00, "Clock Control"},  {0x14, "IC delay chan 4"}, {0x25, "PWM Mux"},          {0x6F, ""},
        {0x55, "UnDocumented!!"}, {0x78, "OUT OF RANGE"},    {INT32_MIN, "OUT OF RANGE"}};
    for (const auto& [number, name] : names) {
        EXPECT_STREQ(LookUpRegister(number).name, name) << number;
    }
}

TEST(RegisterText, FindsARegisterByNumberOrName) {
    const std::pair<const char*, int32_t> found[] = {
        {"29", 0x29},           {"0x2f", 0x2F},    {"5", 5},
        {"1234567", 0x1234567}, {"0X00077", 0x77}, {"peq COEF r6", 0x36},
        {"In: [L-L]", 0x73},    {"bknd_err", 0x1C}};
    for (const auto& [text, reg] : found) {
        EXPECT_EQ(FindRegister(text), reg) << text;
    }
    for (const char* text : {"", "0x", "12345678", "-1", "+1", "29 ", " 29", "PEQ Coef",
                             "PEQ Coef L0 ", "0x2g", "OUT OF RANGE"}) {
        EXPECT_EQ(FindRegister(text), std::nullopt) << text;
    }
}

TEST(RegisterText, ShowsContentsInTheRegistersFormat) {
    const struct {
        int32_t reg;
        std::vector<uint8_t> bytes;
        const char* text;
    } cases[] = {
        {0x05, {0x40}, "40"},
        {0x57, {0, 2, 0, 0}, "00020000 (0.015625)"},
        {0x40, {0x08, 0, 0, 0, 0x07, 0xFF, 0xFF, 0xFF}, "08000000 07FFFFFF (1, 0.99999999)"},
        {0x3C, {0, 0x80, 0, 0, 0xFF, 0x80, 0, 0}, "00800000 FF800000 (1, -1)"},
        {0x51, {0, 0x40, 0, 0, 3, 0x80, 0, 0}, "00400000 03800000 (0.5, -1)"},
        {0x36, {0, 0x80, 0, 0, 3, 0xC0, 0}, "00800000 03C000"},
        {0x78, {1, 2, 3, 4}, "01020304"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DescribeContents(c.reg, c.bytes), c.text) << c.reg;
    }
    EXPECT_EQ(RegisterLabel(0x0B), "0B");
}

}  // namespace
}  // namespace tonvane
