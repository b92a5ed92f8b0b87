// A response as a wave file or raw samples, brought to the length of a speaker response.
#include <algorithm>
#include <cmath>

#include "FuzzSupport.h"
#include "files/ImpulseResponse.h"
#include "soundfile/SoundFile.h"

namespace tonvane::fuzz {

namespace {

// What is written from samples is read back as their float32 values.
void checkRewritten(const std::vector<double>& samples, int32_t rate) {
    InputNotes strict(true);
    const SoundChannel again =
        ReadSoundChannel("again.wav", FormatWaveFile(rate, samples), std::nullopt, strict);
    Require(again.rate == rate && again.samples.size() == samples.size(),
            "a wave file is read back");
    for (size_t i = 0; i < samples.size(); ++i) {
        Require(again.samples[i] == static_cast<double>(static_cast<float>(samples[i])),
                "with the samples that were written");
    }
    Require(ParseRawSamples("again.f32", FormatRawSamples(samples)) == again.samples,
            "and raw samples are the same");
}

void checkImpulse(const std::string& path, SpeakerResponse response) {
    InputNotes notes;
    const bool usable = Accepts([&] {
        response.samples = FitImpulse(path, std::move(response.samples), notes);
        CheckSpeakerResponse(path, response);
    });
    if (!usable) {
        return;
    }
    Require(response.samples.size() == responseFileSamples, "a response has its length");
    const bool fits = std::ranges::all_of(response.samples, [](double sample) {
        return std::fabs(sample) < 1e30;  // in float32
    });
    if (fits) {
        checkRewritten(response.samples, response.rate);
    }
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    using namespace tonvane;
    const std::string_view input = TextOf(data, size);
    const uint32_t hash = HashOf(input);
    const std::string path = "input.wav";
    const auto channel = hash % 4 == 0 ? std::nullopt : std::optional<int32_t>(hash % 4);
    SpeakerResponse response{};
    InputNotes notes;
    const bool isSound = Accepts([&] {
        SoundChannel sound = ReadSoundChannel(path, std::string(input), channel, notes);
        response = {sound.rate, std::move(sound.samples)};
    });
    if (!isSound && !Accepts([&] { response = {48000, ParseRawSamples(path, input)}; })) {
        return 0;
    }
    checkImpulse(path, std::move(response));
    return 0;
}
