// Where and in which line shape the filter file puts the equalizer's sections.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tonvane {

struct ReadFault;

struct RegisterAddressConfig {
    static constexpr const char* fileName = "registeraddress.cfg";

    // The register number printed for each section.
    std::array<int32_t, 7> addresses{0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F};
    int32_t outputFormat = 20;  // 20: one line a section; 4: one line a word
};

// Sets the defaults, then reads a text such as
//
//     address = 29,2A,2B,2C,2D,2E,2F
//     output_format = 4
//
// in one pass: the two keys in this order, each the next word of the text, its first letter any
// letter and the rest in either case. A key that is not next is not found, and the search for the
// second goes on from where the first stopped. Numbers that do not parse keep their defaults.
// Returns the number of keys found, 0 to 2.
int32_t ParseRegisterAddresses(std::string_view text, RegisterAddressConfig& config);

// The same for registeraddress.cfg in a folder whose text ends with its separator; 0 where it
// cannot be read, as `fault` tells.
int32_t LoadRegisterAddressConfig(const std::string& folder, RegisterAddressConfig& config,
                                  ReadFault* fault = nullptr);

}  // namespace tonvane
