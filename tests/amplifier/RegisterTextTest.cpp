// Registers as people type and read them.
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/RegisterText.h"

namespace tonvane {
namespace {

using testing::Eq;
using testing::Optional;

TEST(RegisterText, ARegisterIsFoundByNumberOrName) {
    const std::pair<const char*, int32_t> found[] = {
        {"29", 0x29},          {"0x2f", 0x2F},         {"5", 5},
        {"78", 0x78},          {"1234567", 0x1234567}, {"0X00077", 0x77},
        {"PEQ Coef L0", 0x29}, {"peq COEF r6", 0x36},  {"In: [L-L]", 0x73},
        {"bknd_err", 0x1C}};
    for (const auto& [text, reg] : found) {
        EXPECT_THAT(FindRegister(text), Optional(reg)) << text;
    }
    for (const char* text : {"", "0x", "12345678", "-1", "+1", "29 ", " 29", "PEQ Coef",
                             "PEQ Coef L0 ", "0x2g", "OUT OF RANGE"}) {
        EXPECT_THAT(FindRegister(text), Eq(std::nullopt)) << text;
    }
}

TEST(RegisterText, ContentsShowTheirValuesInTheRegistersFormat) {
    struct Case {
        int32_t reg;
        std::vector<uint8_t> bytes;
        const char* text;
    };
    const Case cases[] = {
        {0x05, {0x40}, "40"},
        {0x55, {}, ""},
        {0x46, {0, 2, 0, 0x20}, "00020020"},
        {0x57, {0, 2, 0, 0}, "00020000 (0.015625)"},
        {0x40, {0x08, 0, 0, 0, 0x07, 0xFF, 0xFF, 0xFF}, "08000000 07FFFFFF (1, 0.99999999)"},
        {0x3C, {0, 0x80, 0, 0, 0xFF, 0x80, 0, 0}, "00800000 FF800000 (1, -1)"},
        {0x51, {0, 0x40, 0, 0, 3, 0x80, 0, 0}, "00400000 03800000 (0.5, -1)"},
        {0x36, {0, 0x80, 0, 0, 3, 0xC0, 0}, "00800000 03C000"},
        {0x78, {1, 2, 3, 4}, "01020304"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(DescribeContents(c.reg, c.bytes), c.text) << c.reg;
    }
    EXPECT_EQ(RegisterLabel(0x0B), "0B");
    EXPECT_EQ(RegisterLabel(0x1B), "1B Oscilator Trim");
}

}  // namespace
}  // namespace tonvane
