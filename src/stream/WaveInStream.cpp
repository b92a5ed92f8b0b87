#include "stream/WaveInStream.h"

#include <algorithm>
#include <cmath>

namespace tonvane {

bool CWaveInStream::Open() {
    if (device == nullptr ||
        !outputBuffer.Allocate(outputFormat.channels, blockFrames, device->IsInterleaved())) {
        return false;
    }
    const int32_t bits = outputFormat.bitsPerSample;
    bytesPerSample = (bits + 7) / 8;
    signShift = (4 - bytesPerSample) * 8;
    scale = std::ldexp(1.0, 1 - bits);
    peak = 0.0;
    clippedSamples = 0;
    framesCaptured = 0;
    lost = false;
    return true;
}

bool CWaveInStream::read(int32_t count) {
    const int32_t given = device->Read(outputBuffer.data, count);
    framesCaptured += given;
    if (given < count) {
        lost = true;
    }
    return given == count;
}

// In place, from the last sample to the first: a double never overwrites raw samples that are still
// to be read.
void CWaveInStream::convert() {
    const auto* raw = reinterpret_cast<const unsigned char*>(outputBuffer.data);
    const double fullScale = 1.0 / scale;
    double highest = 0.0;
    double lowest = 0.0;
    for (int64_t i = int64_t{outputBuffer.channels} * blockFrames - 1; i >= 0; --i) {
        uint32_t word = 0;
        for (int32_t byte = 0; byte < bytesPerSample; ++byte) {
            word |= static_cast<uint32_t>(raw[i * bytesPerSample + byte]) << (8 * byte);
        }
        const double value = static_cast<int32_t>(word << signShift) >> signShift;
        clippedSamples += value <= -fullScale || value >= fullScale - 1.0 ? 1 : 0;
        highest = std::max(highest, value);
        lowest = std::min(lowest, value);
        outputBuffer.data[i] = value * scale;
    }
    peak = std::max({peak, highest * scale, -lowest * scale});
}

bool CWaveInStream::ReadBlock() {
    if (!read(blockFrames)) {
        return false;
    }
    convert();
    Pump();
    return true;
}

void CWaveInStream::Discard(int32_t count) {
    while (device != nullptr && count > 0) {
        const int32_t n = std::min(count, blockFrames);
        if (!read(n)) {
            return;
        }
        count -= n;
    }
}

}  // namespace tonvane
