#include "amplifier/RegisterText.h"

#include <fmt/core.h>

#include "amplifier/FixedPoint.h"
#include "amplifier/RegisterTable.h"
#include "amplifier/WordBytes.h"
#include "text/Ascii.h"
#include "text/WholeNumbers.h"

namespace tonvane {

namespace {

using FromWord = double (*)(int32_t);

// How a register's words are read as numbers; null where they are none.
FromWord formatOf(int32_t reg) {
    if (reg == registers::drc1Threshold || reg == registers::drc2Threshold) {
        return FromThresholdWord;
    }
    constexpr int32_t outputMixerFirst = 0x51;
    constexpr int32_t outputMixerLast = 0x54;
    constexpr int32_t postScale = 0x56;
    constexpr int32_t preScale = 0x57;
    const bool isCoefficient =
        LookUpRegister(reg).length == 20 || reg == registers::drc1AlphaOmega ||
        reg == registers::drc1AttackRelease || reg == registers::drc2AlphaOmega ||
        reg == registers::drc2AttackRelease ||
        (reg >= outputMixerFirst && reg <= outputMixerLast) || reg == postScale ||
        reg == preScale || (reg >= registers::drc1OutWeight && reg < registerCount);
    return isCoefficient ? FromCoefWord : nullptr;
}

}  // namespace

std::string RegisterLabel(int32_t reg) {
    const std::string_view name = LookUpRegister(reg).name;
    return fmt::format("{:02X}{}{}", static_cast<unsigned>(reg), name.empty() ? "" : " ", name);
}

std::string HexGroups(std::span<const uint8_t> bytes) {
    std::string text;
    for (size_t i = 0; i < bytes.size(); ++i) {
        text += fmt::format("{}{:02X}", i > 0 && i % 4 == 0 ? " " : "", bytes[i]);
    }
    return text;
}

std::string DescribeContents(int32_t reg, std::span<const uint8_t> bytes) {
    std::string text = HexGroups(bytes);
    const FromWord fromWord = formatOf(reg);
    const bool isWords = bytes.size() % 4 == 0 && bytes.size() <= mostRegisterBytes;
    if (fromWord == nullptr || bytes.empty() || !isWords) {
        return text;
    }
    const auto words = BytesToWords(bytes);
    const char* separator = " (";
    for (size_t i = 0; i < bytes.size() / 4; ++i) {
        text += fmt::format("{}{:.8g}", separator, fromWord(words[i]));
        separator = ", ";
    }
    return text + ")";
}

std::optional<int32_t> FindRegister(std::string_view text) {
    std::string_view digits = text;
    TakeHexPrefix(digits);
    if (const auto number = ParseHexDigits(digits, 7)) {
        return static_cast<int32_t>(*number);
    }
    for (int32_t reg = 0; reg < registerCount; ++reg) {
        const std::string_view name = LookUpRegister(reg).name;
        if (!name.empty() && IsSameWord(name, text)) {
            return reg;
        }
    }
    return std::nullopt;
}

}  // namespace tonvane
