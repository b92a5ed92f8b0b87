#include "device/SampleDevice.h"

#include <algorithm>
#include <cstring>

namespace tonvane {

namespace {

constexpr float fullScale = 0x1p31F;

int32_t clipped(float scaled) {
    if (scaled >= fullScale) {
        return INT32_MAX;
    }
    return scaled > -fullScale ? static_cast<int32_t>(scaled) : INT32_MIN;
}

int32_t wrapped(float scaled) {
    return scaled >= -fullScale && scaled < fullScale ? static_cast<int32_t>(scaled) : INT32_MIN;
}

// A buffer has the type of neither kind of samples; both have four bytes.
unsigned char* sampleAt(void* buffer, int32_t frame) {
    return static_cast<unsigned char*>(buffer) + sizeof(int32_t) * static_cast<size_t>(frame);
}

template <typename Convert>
void convertFloats(const unsigned char* from, std::span<int32_t> to, Convert convert) {
    for (int32_t& word : to) {
        float sample = 0.0F;
        std::memcpy(&sample, from, sizeof sample);
        word = convert(sample * fullScale);
        from += sizeof sample;
    }
}

void convertIntegers(std::span<const int32_t> from, unsigned char* to) {
    for (const int32_t word : from) {
        const float sample = static_cast<float>(word) * (1.0F / fullScale);
        std::memcpy(to, &sample, sizeof sample);
        to += sizeof sample;
    }
}

}  // namespace

void SampleDevice::openRings(int32_t inputs, int32_t outputs, int32_t frames, int32_t period,
                             int32_t rate) {
    const int32_t sleepMs = 1000 * period / rate / 4;
    capture_.Open(inputs, frames, sleepMs);
    play_.Open(outputs, frames, sleepMs);
}

void SampleDevice::captureSamples(std::span<void* const> buffers, SampleType type, int32_t frames) {
    if (buffers.empty()) {
        return;
    }
    const int32_t kept =
        capture_.Put(frames, [&](int32_t channel, int32_t* to, int32_t first, int32_t count) {
            const std::span words(to, static_cast<size_t>(count));
            if (buffers[channel] == nullptr) {
                std::ranges::fill(words, 0);
                return;
            }
            const unsigned char* from = sampleAt(buffers[channel], first);
            switch (type) {
                case SampleType::integers:
                    std::memcpy(to, from, words.size_bytes());
                    break;
                case SampleType::floats:
                    convertFloats(from, words, clipped);
                    break;
                case SampleType::wrappingFloats:
                    convertFloats(from, words, wrapped);
                    break;
            }
        });
    if (kept < frames) {
        faults_.captureGaps.Note();
    }
}

void SampleDevice::playSamples(std::span<void* const> buffers, SampleType type, int32_t frames) {
    if (buffers.empty()) {
        return;
    }
    const bool ended = play_.isFlushed();
    const int32_t held =
        play_.Take(frames, [&](int32_t channel, const int32_t* from, int32_t first, int32_t count) {
            const std::span words(from, static_cast<size_t>(count));
            unsigned char* to = sampleAt(buffers[channel], first);
            if (type == SampleType::integers) {
                std::memcpy(to, from, words.size_bytes());
            } else {
                convertIntegers(words, to);
            }
        });
    for (void* buffer : buffers) {
        std::memset(sampleAt(buffer, held), 0, sampleAt(buffer, frames) - sampleAt(buffer, held));
    }
    if (held < frames && !ended) {
        faults_.playGaps.Note();
    }
}

}  // namespace tonvane
