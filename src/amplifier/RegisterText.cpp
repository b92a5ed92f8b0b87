#include "amplifier/RegisterText.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "amplifier/FixedPoint.h"
#include "amplifier/RegisterTable.h"
#include "amplifier/WordBytes.h"

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

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string RegisterLabel(int32_t reg) {
    char number[16];
    std::snprintf(number, sizeof number, "%02X", static_cast<unsigned>(reg));
    const std::string name = LookUpRegister(reg).name;
    return name.empty() ? number : number + (" " + name);
}

std::string HexGroups(std::span<const uint8_t> bytes) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && i % 4 == 0) {
            text += ' ';
        }
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0xFU];
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
        char value[40];
        std::snprintf(value, sizeof value, "%s%.8g", separator, fromWord(words[i]));
        text += value;
        separator = ", ";
    }
    return text + ")";
}

std::optional<int32_t> FindRegister(std::string_view text) {
    const bool prefixed = text.starts_with("0x") || text.starts_with("0X");
    if (const auto number = ParseHexDigits(text.substr(prefixed ? 2 : 0), 7)) {
        return static_cast<int32_t>(*number);
    }
    for (int32_t reg = 0; reg < registerCount; ++reg) {
        const std::string_view name = LookUpRegister(reg).name;
        if (!name.empty() && std::ranges::equal(name, text, {}, lowerCase, lowerCase)) {
            return reg;
        }
    }
    return std::nullopt;
}

std::optional<uint32_t> ParseHexDigits(std::string_view text, size_t mostDigits) {
    uint32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
    if (text.size() > mostDigits || error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

}  // namespace tonvane
