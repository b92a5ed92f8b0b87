// The PCM description that travels with samples: between the stages of a chain, to a device, and in
// the head of a wave file.
#pragma once

#include <cstdint>

namespace tonvane {

// The platform's record of the same name, field for field.
struct WAVEFORMATEX {
    uint16_t formatTag = 0;      // 1: PCM in integers
    int16_t channels = 0;        //
    int32_t sampleRate = 0;      // Hz
    int32_t bytesPerSecond = 0;  // blockAlign * sampleRate
    int16_t blockAlign = 0;      // bytes of a frame
    int16_t bitsPerSample = 0;   //
    int16_t extraSize = 0;       // always 0

    bool operator==(const WAVEFORMATEX&) const = default;
};

// A PCM description by the one rule: whole bytes per sample, frames without gaps.
WAVEFORMATEX MakeWaveFormat(int32_t sampleRate, int channels, int bitsPerSample);

}  // namespace tonvane
