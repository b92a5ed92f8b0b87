#include "files/ResponseFile.h"

#include <algorithm>
#include <bit>

#include "files/ImpulseResponse.h"
#include "files/InputError.h"
#include "platform/FileAccess.h"
#include "text/Ascii.h"
#include "text/LittleEndian.h"

namespace tonvane {

namespace {

// What the bytes hold of a rate and the samples behind it; the rest stays as it is.
void decode(std::string_view bytes, int32_t& rate, std::span<double> samples) {
    if (bytes.size() < sizeof rate) {
        return;
    }
    rate = static_cast<int32_t>(LoadLittleEndian<uint32_t>(bytes.substr(0, sizeof rate)));
    bytes.remove_prefix(sizeof rate);
    for (double& sample : samples.first(std::min(samples.size(), bytes.size() / sizeof(double)))) {
        sample = std::bit_cast<double>(LoadLittleEndian<uint64_t>(bytes.substr(0, sizeof sample)));
        bytes.remove_prefix(sizeof sample);
    }
}

}  // namespace

std::string FindLowerCasePath(const std::string& path) {
    const std::string lower = LowerCase(path);
    std::error_code ignored;
    const auto status = std::filesystem::status(PathOf(lower), ignored);
    return exists(status) && !is_directory(status) ? lower : path;
}

std::optional<size_t> ReadResponseFile(const std::string& path, int32_t& rate,
                                       std::span<double> samples) {
    const auto bytes = ReadBinaryFile(path, responseFileBytes);
    if (!bytes) {
        return std::nullopt;
    }
    decode(*bytes, rate, samples);
    return bytes->size();
}

std::string FormatResponseFile(int32_t rate, std::span<const double> samples) {
    std::string bytes;
    bytes.reserve(responseFileBytes);
    AppendLittleEndian(bytes, static_cast<uint32_t>(rate));
    for (const double sample : samples) {
        AppendLittleEndian(bytes, std::bit_cast<uint64_t>(sample));
    }
    return bytes;
}

bool WriteResponseFile(const std::string& path, int32_t rate, std::span<const double> samples) {
    return !ReplaceFile(path, FormatResponseFile(rate, samples));
}

SpeakerResponse ReadCheckedResponseFile(const std::string& path) {
    return ParseResponseFile(path, ReadInputBytes(path, responseFileBytes + 1));
}

SpeakerResponse ParseResponseFile(const std::string& path, std::string_view bytes) {
    if (bytes.size() != responseFileBytes) {
        const bool isLonger = bytes.size() > responseFileBytes;
        throw InputError(path, "expected a speaker response of " +
                                   std::to_string(responseFileBytes) + " bytes, found " +
                                   (isLonger ? "more" : std::to_string(bytes.size())));
    }
    SpeakerResponse response{0, std::vector<double>(responseFileSamples)};
    decode(bytes, response.rate, response.samples);
    CheckSpeakerResponse(path, response);
    return response;
}

}  // namespace tonvane
