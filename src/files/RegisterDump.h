// The register dump: a picture of all registers as text.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace tonvane {

// Fills the contents of a register, as many bytes as it is long.
using RegisterReader = std::function<void(int32_t reg, std::span<uint8_t> contents)>;

// A line for each of the 120 registers: its number as two hexadecimal digits, a tab, its bytes in
// hexadecimal in groups of four. A register of length 0 is not read and has nothing behind the tab.
// What `read` throws comes through.
std::string FormatRegisterDump(const RegisterReader& read);

}  // namespace tonvane
