// Both directions of a stereo run on a device: a signal on the left channel, silence on the right.
#pragma once

#include <cmath>
#include <cstring>
#include <thread>
#include <vector>

#include "device/WaveDevice.h"

namespace tonvane::tests {

class DeviceLoop {
  public:
    using Samples = std::vector<double>;
    static constexpr int32_t depth = 32768;

    explicit DeviceLoop(CWaveDevice& device)
        : device_(device), size_(static_cast<size_t>(device.BitsPerSample() / 8)) {}

    // At 48 kHz in the device's own width.
    bool Open() {
        const WAVEFORMATEX format = MakeWaveFormat(48000, 2, device_.BitsPerSample());
        return device_.Open(&format, &format, depth, nullptr);
    }

    // Plays a signal to its end and captures so many frames, in blocks of 256; what came in on the
    // left channel, short when the device ended the run.
    Samples Run(const Samples& played, int32_t frames) {
        left.clear();
        right.clear();
        written = 0;
        std::thread writer([&] { write(played); });
        std::thread reader([&] { read(frames); });
        device_.WaitFilled();
        device_.Start();
        writer.join();
        reader.join();
        return left;
    }

    Samples left, right;
    int32_t written = 0;  // frames

  private:
    static constexpr int32_t block = 256;

    [[nodiscard]] size_t at(int32_t frame, int32_t channel) const {
        return size_ * static_cast<size_t>(device_.IsInterleaved() ? 2 * frame + channel
                                                                   : channel * block + frame);
    }

    // A sample is the high bytes of a word of 32 bits, little-endian as this machine.
    void write(const Samples& played) {
        for (size_t first = 0; first < played.size(); first += block) {
            std::vector<char> bytes(2 * block * size_);
            for (int32_t i = 0; i < block && first + i < played.size(); ++i) {
                const auto word = static_cast<int32_t>(std::floor(played[first + i] * 0x1p31));
                std::memcpy(&bytes[at(i, 0)], reinterpret_cast<const char*>(&word) + 4 - size_,
                            size_);
            }
            written += device_.Write(bytes.data(), block);
        }
        device_.FlushOutput();
        device_.WaitEmpty();
    }

    void read(int32_t frames) {
        std::vector<char> bytes(2 * block * size_);
        const auto sample = [&](int32_t frame, int32_t channel) {
            int32_t word = 0;
            std::memcpy(reinterpret_cast<char*>(&word) + 4 - size_, &bytes[at(frame, channel)],
                        size_);
            return word * 0x1p-31;
        };
        for (int32_t got = block; got == block && static_cast<int32_t>(left.size()) < frames;) {
            got = device_.Read(bytes.data(), block);
            for (int32_t i = 0; i < got; ++i) {
                left.push_back(sample(i, 0));
                right.push_back(sample(i, 1));
            }
        }
    }

    CWaveDevice& device_;
    size_t size_;  // of a sample in bytes
};

}  // namespace tonvane::tests
