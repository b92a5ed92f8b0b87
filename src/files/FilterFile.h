// The filter file: the seven equalizer sections as text, for the calling tool.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "amplifier/BiquadWords.h"
#include "files/AddressConfig.h"

namespace tonvane {

// One record a section: "0x" and the section's address, then the bytes of its five words in
// hexadecimal, most significant first. In format 20 a record is one line; in format 4 each word
// behind the first stands on a line of its own that begins with "0xFF". `words` holds five words
// for each of the seven sections.
std::string FormatFilterFile(std::span<const int32_t> words, const RegisterAddressConfig& config);

// One record of a filter file.
struct FilterRecord {
    int32_t address = 0;
    BiquadWords words{};

    bool operator==(const FilterRecord&) const = default;
};

// Reads the seven records of a filter file of either shape for a person: throws InputError with the
// line for anything else, such as an address of more than seven digits or a word beyond 26 bits.
// Blank lines and blanks at a line's end are passed over.
std::array<FilterRecord, 7> ReadCheckedFilterFile(const std::string& path);

// The same for a text that has been read; `path` is for the messages.
std::array<FilterRecord, 7> ParseFilterFile(const std::string& path, std::string_view text);

}  // namespace tonvane
