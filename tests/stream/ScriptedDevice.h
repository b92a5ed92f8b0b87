// A device that takes and gives bytes at once, for tests of single stages.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "device/WaveDevice.h"

namespace tonvane::tests {

struct ScriptedDevice : CWaveDevice {
    bool Open(const WAVEFORMATEX* /*capture*/, const WAVEFORMATEX* play, int /*frames*/,
              void* /*notify*/) override {
        format = *play;
        return true;
    }
    void Close() override {}
    bool Start() override { return true; }
    void Stop() override {}
    int Read(void* data, int frames) override {
        const size_t n = static_cast<size_t>(frames) * frameBytes;
        std::copy_n(toRead.begin(), n, static_cast<uint8_t*>(data));
        toRead.erase(toRead.begin(), toRead.begin() + static_cast<std::ptrdiff_t>(n));
        return frames;
    }
    int Write(const void* data, int frames) override {
        const auto* bytes = static_cast<const uint8_t*>(data);
        written.insert(written.end(), bytes, bytes + static_cast<size_t>(frames) * frameBytes);
        return frames;
    }
    void FlushOutput() override {}
    void WaitFilled() override {}
    void WaitEmpty() override {}
    bool IsInterleaved() override { return interleaved; }
    int BitsPerSample() override { return bits; }
    int Latency() override { return 0; }

    WAVEFORMATEX format;
    bool interleaved = true;
    int bits = 16;
    size_t frameBytes = 0;
    std::vector<uint8_t> toRead, written;
};

}  // namespace tonvane::tests
