// Registers and their contents as people read and type them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tonvane {

// The number as two hexadecimal digits and the name: "29 PEQ Coef L0"; the number alone for a
// register without a name.
std::string RegisterLabel(int32_t reg);

// Two upper-case hexadecimal digits a byte, in groups of four bytes with a blank between:
// "0002A39B 007D5C65".
std::string HexGroups(std::span<const uint8_t> bytes);

// HexGroups and, for whole words of a register that holds fixed-point numbers, their values:
// "00800000 03800000 (1, -1)".
std::string DescribeContents(int32_t reg, std::span<const uint8_t> bytes);

// The number of a register given by hexadecimal digits, with or without 0x, or by its name in any
// case. A number of up to seven digits is returned whether or not the table has it; nothing for a
// text that is neither.
std::optional<int32_t> FindRegister(std::string_view text);

}  // namespace tonvane
