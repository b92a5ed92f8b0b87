#include "device/asio/AsioSwitch.h"

#include <bit>
#include <cstring>

namespace tonvane {

namespace {

constexpr float fullScale = 0x1p31F;

// Replaces each sample of a buffer by another of four bytes; the buffer has the type of neither.
template <typename From, typename Convert>
void convertInPlace(void* buffer, int32_t frames, Convert convert) {
    auto* bytes = static_cast<unsigned char*>(buffer);
    for (int32_t i = 0; i < frames; ++i, bytes += sizeof(From)) {
        From sample;
        std::memcpy(&sample, bytes, sizeof sample);
        const auto converted = convert(sample);
        static_assert(sizeof converted == sizeof sample);
        std::memcpy(bytes, &converted, sizeof converted);
    }
}

bool isKnown(AsioSampleType type) {
    return type == AsioSampleType::int32 || type == AsioSampleType::float32;
}

unsigned char* sampleAt(void* buffer, int32_t frame) {
    return static_cast<unsigned char*>(buffer) + sizeof(int32_t) * static_cast<size_t>(frame);
}

}  // namespace

int32_t AsioIntegerOf(float sample) {
    const float scaled = sample * fullScale;
    return scaled >= -fullScale && scaled < fullScale ? static_cast<int32_t>(scaled) : INT32_MIN;
}

void AsioSwitch::Capture(std::span<void* const> buffers, AsioSampleType type, int32_t frames) {
    if (buffers.empty() || !isKnown(type)) {
        return;
    }
    if (type == AsioSampleType::float32) {
        for (void* buffer : buffers) {
            convertInPlace<float>(buffer, frames, AsioIntegerOf);
        }
    }
    const int32_t kept =
        capture.Put(frames, [&](int32_t channel, int32_t* to, int32_t first, int32_t count) {
            std::memcpy(to, sampleAt(buffers[channel], first),
                        sizeof(int32_t) * static_cast<size_t>(count));
        });
    if (kept < frames) {
        captureGaps.Note();
    }
}

void AsioSwitch::Play(std::span<void* const> buffers, AsioSampleType type, int32_t frames) {
    if (buffers.empty() || !isKnown(type)) {
        return;
    }
    const bool ended = play.isFlushed();
    const int32_t held =
        play.Take(frames, [&](int32_t channel, const int32_t* from, int32_t first, int32_t count) {
            std::memcpy(sampleAt(buffers[channel], first), from,
                        sizeof(int32_t) * static_cast<size_t>(count));
        });
    for (void* buffer : buffers) {
        std::memset(sampleAt(buffer, held), 0,
                    sizeof(int32_t) * static_cast<size_t>(frames - held));
    }
    if (held < frames && !ended) {
        playGaps.Note();
    }
    if (type == AsioSampleType::float32) {
        for (void* buffer : buffers) {
            convertInPlace<int32_t>(buffer, frames, [](int32_t sample) {
                return static_cast<float>(sample) * (1.0F / fullScale);
            });
        }
    }
}

}  // namespace tonvane
