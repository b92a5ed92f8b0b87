#include "stream/WaveOutStream.h"

#include <cmath>

namespace tonvane {

bool CWaveOutStream::Open() {
    if (device == nullptr) {
        return false;
    }
    const bool interleaved = device->IsInterleaved();
    outputBuffer.Detach();
    if (!inputBuffer.Allocate(inputFormat.channels, blockFrames, interleaved) ||
        !deviceBuffer.Allocate(inputFormat.channels, blockFrames, interleaved)) {
        return false;
    }
    outputBuffer.Attach(inputBuffer.data, inputFormat.channels, blockFrames, interleaved);
    const int32_t bits = device->BitsPerSample();
    inputFormat = MakeWaveFormat(inputFormat.sampleRate, inputFormat.channels, bits);
    outputFormat = inputFormat;
    bytesPerSample = (bits + 7) / 8;
    scale = std::ldexp(1.0, bits - 1);
    maximum = scale - 1.0;
    minimum = -scale;
    framesPlayed = 0;
    lost = false;
    return true;
}

void CWaveOutStream::Close() {
    outputBuffer.Detach();
}

void CWaveOutStream::store(const double* in, int32_t count, unsigned char* bytes) const {
    for (int32_t i = 0; i < count; ++i) {
        double v = in[i] * scale;
        if (!(v < maximum)) {
            v = maximum;
        }
        v = v > minimum ? v + 0.5 : minimum;
        const auto word = static_cast<int64_t>(v);
        for (int32_t byte = 0; byte < bytesPerSample; ++byte) {
            *bytes++ = static_cast<unsigned char>(static_cast<uint64_t>(word) >> (8 * byte));
        }
    }
}

void CWaveOutStream::Process(const double* in, double* /*out*/) {
    store(in, inputBuffer.channels * blockFrames,
          reinterpret_cast<unsigned char*>(deviceBuffer.data));
    const int32_t written = device->Write(deviceBuffer.data, blockFrames);
    framesPlayed += written;
    if (written < blockFrames) {
        lost = true;
    }
}

}  // namespace tonvane
