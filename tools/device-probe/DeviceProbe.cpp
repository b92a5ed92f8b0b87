// device-probe DEVICE RATE CHANNELS PLAYED CAPTURED FRAMES [PAUSE]
//
// Plays a file of 32-bit samples (frames, little-endian) on a device and writes what it captures
// meanwhile, so many frames, as the same. A device of 16 bits takes the upper half. Stops the
// device when the frame PAUSE is to be played, and starts it again. Tells standard error that the
// device has started, and prints what it reports in the end; exit code 1, with the refusal and what
// was shown, when it refuses to open.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "device/menu/DeviceMenu.h"
#include "platform/System.h"

namespace tonvane {
namespace {

constexpr int32_t queueFrames = 32768;
constexpr int32_t blockFrames = 256;

using Frames = std::vector<int32_t>;  // the channels of a frame side by side

Frames readFrames(const char* path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    Frames frames(static_cast<size_t>(file.tellg()) / sizeof(int32_t));
    file.seekg(0).read(reinterpret_cast<char*>(frames.data()),
                       static_cast<std::streamsize>(frames.size() * sizeof(int32_t)));
    return frames;
}

// A block as the device wants it.
class Block {
  public:
    Block(CWaveDevice& device, int32_t channels)
        : isWide_(device.BitsPerSample() == 32),
          isInterleaved_(device.IsInterleaved()),
          channels_(channels),
          words_(static_cast<size_t>(channels * blockFrames)),
          shorts_(words_.size()) {}

    void* data() {
        return isWide_ ? static_cast<void*>(words_.data()) : static_cast<void*>(shorts_.data());
    }
    void set(int32_t frame, int32_t channel, int32_t sample) {
        words_[at(frame, channel)] = sample;
        shorts_[at(frame, channel)] = static_cast<int16_t>(sample / 65536);
    }
    [[nodiscard]] int32_t get(int32_t frame, int32_t channel) const {
        const size_t index = at(frame, channel);
        return isWide_ ? words_[index] : shorts_[index] * 65536;
    }

  private:
    [[nodiscard]] size_t at(int32_t frame, int32_t channel) const {
        return static_cast<size_t>(isInterleaved_ ? frame * channels_ + channel
                                                  : channel * blockFrames + frame);
    }

    bool isWide_;
    bool isInterleaved_;
    int32_t channels_;
    std::vector<int32_t> words_;
    std::vector<int16_t> shorts_;
};

void play(CWaveDevice& device, int32_t channels, const Frames& frames, int32_t pause) {
    Block block(device, channels);
    const auto count = static_cast<int32_t>(frames.size()) / channels;
    for (int32_t first = 0; first < count; first += blockFrames) {
        for (int32_t i = 0; i < blockFrames * channels; ++i) {
            const size_t index = static_cast<size_t>(first) * channels + i;
            block.set(i / channels, i % channels, index < frames.size() ? frames[index] : 0);
        }
        if (first < pause && first + blockFrames >= pause) {
            device.Stop();
            device.Start();
        }
        device.Write(block.data(), blockFrames);
    }
    device.FlushOutput();
    device.WaitEmpty();
}

Frames capture(CWaveDevice& device, int32_t channels, int32_t count) {
    Block block(device, channels);
    Frames frames;
    for (int32_t first = 0; first < count; first += blockFrames) {
        if (device.Read(block.data(), blockFrames) != blockFrames) {
            break;
        }
        for (int32_t i = 0; i < blockFrames * channels; ++i) {
            frames.push_back(block.get(i / channels, i % channels));
        }
    }
    return frames;
}

int run(int count, char** arguments) {
    const auto show = [](const std::string& text) { std::printf("shown: %s\n", text.c_str()); };
    const DeviceEntry entry = FindDevice(ListDevices(show), arguments[1]);
    if (!entry.make) {
        std::printf("no such device\n");
        return 1;
    }
    const int32_t channels = std::atoi(arguments[3]);
    const auto device = entry.make();
    const WAVEFORMATEX format =
        MakeWaveFormat(std::atoi(arguments[2]), channels, device->BitsPerSample());
    if (!device->Open(&format, &format, queueFrames, nullptr)) {
        std::printf("refused: %s\n", device->refusal().c_str());
        return 1;
    }
    const Frames played = readFrames(arguments[4]);
    Frames captured;
    std::thread writer(
        [&] { play(*device, channels, played, count == 8 ? std::atoi(arguments[7]) : 0); });
    std::thread reader([&] { captured = capture(*device, channels, std::atoi(arguments[6])); });
    device->WaitFilled();
    device->Start();
    std::fputs("started\n", stderr);
    writer.join();
    reader.join();
    device->Stop();
    std::printf("latency %d\nxruns %d\nlost %d\n", device->Latency(), device->xruns(),
                device->isLost() ? 1 : 0);
    device->Close();
    std::ofstream(arguments[5], std::ios::binary)
        .write(reinterpret_cast<const char*>(captured.data()),
               static_cast<std::streamsize>(captured.size() * sizeof(int32_t)));
    return 0;
}

}  // namespace
}  // namespace tonvane

int main(int count, char** arguments) {
    tonvane::KeepStandardStreams();
    if (count != 7 && count != 8) {
        std::puts("device-probe DEVICE RATE CHANNELS PLAYED CAPTURED FRAMES [PAUSE]");
        return 2;
    }
    return tonvane::run(count, arguments);
}
