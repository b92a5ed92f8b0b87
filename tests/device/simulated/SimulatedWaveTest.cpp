// The device without hardware: what it captures, and how its faults end. Blocks are the bytes of
// 256 stereo frames in the device's own format.
#include <gmock/gmock.h>

#include "device/simulated/SimulatedWave.h"
#include "support/Signals.h"
#include "support/WaveBytes.h"

namespace tonvane {
namespace {

using std::chrono::milliseconds;

class SimulatedWave : public tests::WithFftTables {
  protected:
    [[nodiscard]] size_t frameBytes() const { return static_cast<size_t>(setup.bits / 4); }

    // Of 16 bits, in the upper bytes of the samples.
    [[nodiscard]] std::string noise(int32_t frames) const {
        std::string bytes;
        for (const double sample : tests::Noise(2 * frames, 8)) {
            bytes.append(frameBytes() / 2 - 2, '\0');
            bytes += tests::LittleEndian(static_cast<uint64_t>(std::llround(sample * 32767.0)), 2);
        }
        return bytes;
    }

    void open() {
        if (!device) {
            device.emplace(setup);
        }
        const WAVEFORMATEX format = MakeWaveFormat(48000, 2, setup.bits);
        ASSERT_TRUE(device->Open(&format, &format, 32768, nullptr));
    }

    // Plays blocks to their end and captures so many frames.
    std::string run(const std::string& played, size_t frames) {
        open();
        const size_t block = 256 * frameBytes();
        std::thread writer([&] {
            for (size_t i = 0; i < played.size(); i += block) {
                device->Write(&played[i], 256);
            }
            device->FlushOutput();
            device->WaitEmpty();
        });
        std::string captured(frames * frameBytes(), '\0');
        std::thread reader([&] {
            for (size_t i = 0; i < captured.size(); i += block) {
                device->Read(&captured[i], 256);
            }
        });
        device->WaitFilled();
        device->Start();
        writer.join();
        reader.join();
        return captured;
    }

    SimulatedSetup setup{.patience = std::chrono::hours(1)};
    std::optional<CSimulatedWave> device;
};

TEST_F(SimulatedWave, HearsThroughItsImpulseResponse) {
    setup.impulse.resize(1537);
    setup.impulse.front() = 0.5;
    setup.impulse.back() = 0.25;
    const std::string played = noise(10240) + std::string(2048 * frameBytes(), '\0');
    std::vector<int32_t> words(played.size() / sizeof(int32_t));
    std::memcpy(words.data(), played.data(), played.size());
    std::vector<int32_t> heard(words.size());
    for (size_t i = 0; i < words.size(); ++i) {
        heard[i] = words[i] / 2 + (i < 2 * 1536 ? 0 : words[i - 2 * 1536] / 4);
    }
    const std::string captured = run(played, 12288);
    EXPECT_EQ(std::memcmp(captured.data(), heard.data(), captured.size()), 0);
}

TEST_F(SimulatedWave, GoesOnWithoutAWorkerThatHasLeftAndCountsAGapOfTheRunIfItComesBack) {
    setup.patience = milliseconds(1);
    open();
    ASSERT_TRUE(device->Start());
    std::string frames = noise(200000);
    EXPECT_EQ(device->Write(frames.data(), 200000), 200000);
    EXPECT_EQ(device->xruns(), 0) << "nobody has come back to miss a frame";
    EXPECT_EQ(device->Read(frames.data(), 256), 256);
    EXPECT_EQ(device->xruns(), 1);
    device->Write(frames.data(), 200000);
    run(noise(1024), 256);
    EXPECT_EQ(device->xruns(), 0) << "of a new run";
}

}  // namespace
}  // namespace tonvane
