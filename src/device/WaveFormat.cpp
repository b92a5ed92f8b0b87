#include "device/WaveFormat.h"

namespace tonvane {

WAVEFORMATEX MakeWaveFormat(int32_t sampleRate, int channels, int bitsPerSample) {
    const int bytesPerSample = (bitsPerSample + 7) / 8;
    WAVEFORMATEX format;
    format.formatTag = 1;
    format.channels = static_cast<int16_t>(channels);
    format.sampleRate = sampleRate;
    format.blockAlign = static_cast<int16_t>(bytesPerSample * channels);
    format.bytesPerSecond = format.blockAlign * sampleRate;
    format.bitsPerSample = static_cast<int16_t>(bitsPerSample);
    return format;
}

}  // namespace tonvane
