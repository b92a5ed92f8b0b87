// The device without hardware: what it captures, and how its faults end.
#include <thread>

#include <gmock/gmock.h>

#include "device/simulated/SimulatedWave.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using std::chrono::milliseconds;
using Words = std::vector<int32_t>;  // blocks of 256 frames: the left samples, then the right ones

class SimulatedWave : public tests::WithFftTables {
  protected:
    // Of 16 bits, in the upper ones.
    static Words noise(int32_t frames) {
        Words words;
        for (const double sample : tests::Noise(2 * frames, 8)) {
            words.push_back(static_cast<int32_t>(std::lround(sample * 32767.0)) * 65536);
        }
        return words;
    }
    void open() {
        if (!device) {
            device.emplace(setup);
        }
        const WAVEFORMATEX format = MakeWaveFormat(48000, 2, 32);
        ASSERT_TRUE(device->Open(&format, &format, 32768, nullptr));
    }
    // Plays blocks to their end and captures as much.
    Words run(const Words& played) {
        open();
        std::thread writer([&] {
            for (size_t i = 0; i < played.size(); i += 512) {
                device->Write(&played[i], 256);
            }
            device->FlushOutput();
            device->WaitEmpty();
        });
        Words captured(played.size());
        std::thread reader([&] {
            for (size_t i = 0; i < captured.size(); i += 512) {
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
    Words played = noise(10240);
    played.resize(2 * 12288);
    Words heard(played.size());
    for (size_t i = 0; i < played.size(); ++i) {
        heard[i] = played[i] / 2 + (i < 2 * 1536 ? 0 : played[i - 2 * 1536] / 4);
    }
    EXPECT_EQ(run(played), heard);
}

TEST_F(SimulatedWave, GoesOnWithoutAWorkerThatHasLeftAndCountsAGapOfTheRunIfItComesBack) {
    setup.patience = milliseconds(1);
    open();
    ASSERT_TRUE(device->Start());
    Words frames = noise(200000);
    EXPECT_EQ(device->Write(frames.data(), 200000), 200000);
    EXPECT_EQ(device->xruns(), 0) << "nobody has come back to miss a frame";
    EXPECT_EQ(device->Read(frames.data(), 256), 256);
    EXPECT_EQ(device->xruns(), 1);
    device->Write(frames.data(), 200000);
    run(noise(1024));
    EXPECT_EQ(device->xruns(), 0) << "of a new run";
}

}  // namespace
}  // namespace tonvane
