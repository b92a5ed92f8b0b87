#include "files/ResponseFile.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "files/FileAccess.h"
#include "files/ImpulseResponse.h"
#include "files/InputError.h"

namespace tonvane {

namespace {

// Copies whole values out of little-endian bytes; returns how many there were.
template <typename Value>
size_t decode(std::string_view bytes, std::span<Value> values) {
    const size_t count = std::min(bytes.size() / sizeof(Value), values.size());
    for (size_t i = 0; i < count; ++i) {
        char raw[sizeof(Value)];
        std::memcpy(raw, bytes.data() + i * sizeof(Value), sizeof raw);
        if constexpr (std::endian::native == std::endian::big) {
            std::ranges::reverse(raw);
        }
        std::memcpy(&values[i], raw, sizeof raw);
    }
    return count;
}

template <typename Value>
void encode(std::span<const Value> values, std::string& bytes) {
    for (const Value& value : values) {
        char raw[sizeof(Value)];
        std::memcpy(raw, &value, sizeof raw);
        if constexpr (std::endian::native == std::endian::big) {
            std::ranges::reverse(raw);
        }
        bytes.append(raw, sizeof raw);
    }
}

}  // namespace

bool ReadResponseFile(const std::string& path, int32_t& rate, std::span<double> samples) {
    const auto bytes = ReadBinaryFile(path, responseFileBytes);
    if (!bytes) {
        return false;
    }
    if (decode(std::string_view(*bytes), std::span(&rate, 1)) == 1) {
        decode(std::string_view(*bytes).substr(sizeof rate), samples);
    }
    return true;
}

std::string FormatResponseFile(int32_t rate, std::span<const double> samples) {
    std::string bytes;
    bytes.reserve(responseFileBytes);
    encode(std::span<const int32_t>(&rate, 1), bytes);
    encode(samples, bytes);
    return bytes;
}

bool WriteResponseFile(const std::string& path, int32_t rate, std::span<const double> samples) {
    return !ReplaceFile(path, FormatResponseFile(rate, samples));
}

SpeakerResponse ReadCheckedResponseFile(const std::string& path) {
    const auto bytes = ReadBinaryFile(path, responseFileBytes + 1);
    if (!bytes) {
        throw InputError(path, "cannot be opened");
    }
    if (bytes->size() != responseFileBytes) {
        const bool isLonger = bytes->size() > responseFileBytes;
        throw InputError(path, "expected a speaker response of " +
                                   std::to_string(responseFileBytes) + " bytes, found " +
                                   (isLonger ? "more" : std::to_string(bytes->size())));
    }
    SpeakerResponse response{0, std::vector<double>(responseFileSamples)};
    decode(std::string_view(*bytes), std::span(&response.rate, 1));
    decode(std::string_view(*bytes).substr(sizeof(int32_t)), std::span(response.samples));

    CheckSpeakerResponse(path, response);
    return response;
}

}  // namespace tonvane
