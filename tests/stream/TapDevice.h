// The simulated device with an ear at both of its ends.
#pragma once

#include <atomic>
#include <cstring>
#include <string>
#include <vector>

#include "device/simulated/SimulatedWave.h"

namespace tonvane::tests {

// Samples of 32 bits, planar, as the simulated device has them by itself.
class TapDevice : public CSimulatedWave {
  public:
    explicit TapDevice(const SimulatedSetup& setup) : CSimulatedWave(setup) {}

    bool Start() override {
        ++starts;
        return CSimulatedWave::Start();
    }
    void Stop() override {
        ++stops;
        CSimulatedWave::Stop();
    }
    bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
              void* notify) override {
        channels = static_cast<size_t>(play->channels);
        played.assign(channels, {});
        isOpen = CSimulatedWave::Open(capture, play, frames, notify);
        return isOpen;
    }
    void Close() override {
        CSimulatedWave::Close();
        isOpen = false;
    }
    int Write(const void* data, int frames) override {
        const auto* words = static_cast<const int32_t*>(data);
        for (size_t channel = 0; keep && channel < channels; ++channel) {
            for (int i = 0; i < frames; ++i) {
                played[channel].push_back(*words++ / 2147483648.0);
            }
        }
        return CSimulatedWave::Write(data, frames);
    }
    int Read(void* data, int frames) override {
        const int given = CSimulatedWave::Read(data, frames);
        auto* words = static_cast<int32_t*>(data);
        for (int i = 0; numberFrames && i < frames; ++i, ++framesGiven) {
            words[i] = words[frames + i] = framesGiven * 256;
        }
        return given;
    }

    bool keep = true;           // what is played
    bool numberFrames = false;  // capture 256 times the number of each frame instead
    int32_t framesGiven = 0;
    size_t channels = 0;
    std::vector<std::vector<double>> played;  // by channel
    std::atomic<int> starts{0}, stops{0};
    std::atomic<bool> isOpen{false};
};

}  // namespace tonvane::tests
