#include "files/ImpulseResponse.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include <fmt/core.h>

#include "files/InputError.h"
#include "files/RateRange.h"
#include "text/LittleEndian.h"

namespace tonvane {

namespace {

constexpr size_t wantedSamples = responseFileSamples;
constexpr size_t lead = 1024;                     // kept ahead of an onset
constexpr double onsetShare = 0.1;                // of the peak: where a response starts
constexpr double negligible = 1e-4;               // share of the energy that may be cut
constexpr size_t bytesPerValue = 4;               // float32
constexpr size_t longestRaw = size_t{64} << 20U;  // bytes

// What the formats of float32 samples hold with all of their digits.
constexpr double loudest = std::numeric_limits<float>::max();
constexpr double faintest = std::numeric_limits<float>::min();

double energyOf(std::span<const double> samples) {
    double energy = 0.0;
    for (const double sample : samples) {
        energy += sample * sample;
    }
    return energy;
}

size_t onsetOf(std::span<const double> samples) {
    double peak = 0.0;
    for (const double sample : samples) {
        peak = std::max(peak, std::fabs(sample));
    }
    const auto onset = std::ranges::find_if(
        samples, [peak](double sample) { return std::fabs(sample) >= onsetShare * peak; });
    return static_cast<size_t>(onset - samples.begin());
}

void checkSamples(const std::string& path, std::span<const double> samples) {
    const auto bad = std::ranges::find_if_not(samples, [](double sample) {
        return std::isfinite(sample) && std::fabs(sample) <= loudest;
    });
    if (bad != samples.end()) {
        throw InputError(
            path, "sample " + std::to_string(bad - samples.begin()) + " is not a usable number");
    }
    const bool silent =
        std::ranges::all_of(samples, [](double sample) { return std::fabs(sample) < faintest; });
    if (silent) {
        throw InputError(path, "the response is silence");
    }
}

std::string shareText(double share) {
    return share <= 0.0 ? "nothing"
                        : fmt::format("{:.1f} dB of its energy", 10.0 * std::log10(share));
}

}  // namespace

void CheckSpeakerResponse(const std::string& path, const SpeakerResponse& response) {
    if (!IsUsableRate(response.rate)) {
        throw InputError(path, "the file's sample rate is " + std::to_string(response.rate) +
                                   " Hz, expected " + usableRates);
    }
    checkSamples(path, response.samples);
}

std::vector<double> FitImpulse(const std::string& path, std::vector<double> samples,
                               InputNotes& notes) {
    const size_t count = samples.size();
    if (count <= wantedSamples) {
        if (count < wantedSamples) {
            notes.told(path, std::to_string(count) + " samples, filled up with zeros to " +
                                 std::to_string(wantedSamples));
        }
        samples.resize(wantedSamples);
        return samples;
    }
    checkSamples(path, samples);
    const std::span all(samples);
    const double total = energyOf(all);
    const auto cutShare = [&](size_t first) {
        return (energyOf(all.first(first)) + energyOf(all.subspan(first + wantedSamples))) / total;
    };
    size_t first = 0;
    if (cutShare(first) > negligible) {
        const size_t onset = onsetOf(all);
        first = std::min(onset > lead ? onset - lead : 0, count - wantedSamples);
    }
    const double share = cutShare(first);
    const std::string what = "the file has " + std::to_string(count) + " samples, " +
                             std::to_string(wantedSamples) + " are used; ";
    if (share > negligible) {
        throw InputError(path, what + "the others hold " + shareText(share) +
                                   ", too much to cut (at most -40 dB)");
    }
    notes.guessed(path, 0,
                  what + "from sample " + std::to_string(first) + " on, with the others " +
                      shareText(share) + " is cut");
    const auto begin = samples.begin() + static_cast<ptrdiff_t>(first);
    return {begin, begin + static_cast<ptrdiff_t>(wantedSamples)};
}

std::vector<double> ParseRawSamples(const std::string& path, std::string_view bytes) {
    if (bytes.empty() || bytes.size() > longestRaw || bytes.size() % bytesPerValue != 0) {
        throw InputError(path, "expected float32 samples, four bytes each, up to 64 MB; found " +
                                   std::to_string(bytes.size()) + " bytes");
    }
    std::vector<double> samples(bytes.size() / bytesPerValue);
    for (size_t i = 0; i < samples.size(); ++i) {
        const auto value = bytes.substr(i * bytesPerValue, bytesPerValue);
        samples[i] = std::bit_cast<float>(LoadLittleEndian<uint32_t>(value));
    }
    return samples;
}

std::string FormatRawSamples(std::span<const double> samples) {
    std::string bytes;
    bytes.reserve(samples.size() * bytesPerValue);
    for (const double sample : samples) {
        AppendLittleEndian(bytes, std::bit_cast<uint32_t>(static_cast<float>(sample)));
    }
    return bytes;
}

}  // namespace tonvane
