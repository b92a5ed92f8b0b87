#include "device/jack/FloatSwitch.h"

#include <algorithm>

namespace tonvane {

namespace {

constexpr float fullScale = 0x1p31F;

}  // namespace

int32_t SampleOfFloat(float sample) {
    const float scaled = sample * fullScale;
    if (scaled >= fullScale) {
        return INT32_MAX;
    }
    return scaled > -fullScale ? static_cast<int32_t>(scaled) : INT32_MIN;
}

void FloatSwitch::Exchange(std::span<const float* const> captured, std::span<float* const> played,
                           int32_t frames) {
    if (!captured.empty()) {
        const int32_t kept =
            capture.Put(frames, [&](int32_t channel, int32_t* to, int32_t first, int32_t count) {
                const float* from = captured[channel];
                if (from == nullptr) {
                    std::fill_n(to, count, 0);
                } else {
                    std::transform(from + first, from + first + count, to, SampleOfFloat);
                }
            });
        if (kept < frames) {
            captureGaps.Note();
        }
    }
    if (!played.empty()) {
        const bool ended = play.isFlushed();
        const int32_t held = play.Take(
            frames, [&](int32_t channel, const int32_t* from, int32_t first, int32_t count) {
                std::transform(from, from + count, played[channel] + first, [](int32_t sample) {
                    return static_cast<float>(sample) * (1.0F / fullScale);
                });
            });
        for (float* buffer : played) {
            std::fill(buffer + held, buffer + frames, 0.0F);
        }
        if (held < frames && !ended) {
            playGaps.Note();
        }
    }
}

}  // namespace tonvane
