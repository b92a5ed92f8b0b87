// The speaker response file (.qsr): a sample rate and an impulse response.
//
// 262148 bytes, little-endian, no mark: an int32 sample rate in Hz, then 32768 doubles, sample 0
// first, with the onset near sample 32.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "design/DesignGrid.h"

namespace tonvane {

constexpr int32_t responseFileSamples = responseLength;
constexpr size_t responseFileBytes =
    sizeof(int32_t) + static_cast<size_t>(responseFileSamples) * sizeof(double);

// The number of bytes read, at most responseFileBytes; nothing if the file cannot be opened or
// read, with nothing changed. A short file gives what it holds: the rate and the samples behind its
// end stay as they were. `samples` has 32768 elements.
std::optional<size_t> ReadResponseFile(const std::string& path, int32_t& rate,
                                       std::span<double> samples);

// The path in lower case if such a file (not a folder) exists, otherwise the path as it is:
// programs of systems without case in their file names hand over lower-case paths.
std::string FindLowerCasePath(const std::string& path);

// The bytes of a speaker response file with these 32768 samples.
std::string FormatResponseFile(int32_t rate, std::span<const double> samples);

// False if the file cannot be written; an existing one is then as it was.
bool WriteResponseFile(const std::string& path, int32_t rate, std::span<const double> samples);

struct SpeakerResponse {
    int32_t rate;  // Hz
    std::vector<double> samples;
};

// The same for a person: throws InputError for a file that is missing, short or overlong, a rate
// outside 8000 to 192000 Hz, samples that are no finite numbers, or silence.
SpeakerResponse ReadCheckedResponseFile(const std::string& path);

// The same for bytes that have been read; `path` is for the messages.
SpeakerResponse ParseResponseFile(const std::string& path, std::string_view bytes);

}  // namespace tonvane
