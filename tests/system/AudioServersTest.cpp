// The devices on real servers without hardware: what is played is captured again.
#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>

#include "device/AudioServers.h"
#include "device/DeviceFaults.h"
#include "device/DeviceLoop.h"
#include "device/alsa/AlsaWave.h"
#include "device/jack/JackWave.h"
#include "device/menu/DeviceMenu.h"
#include "support/CallWatch.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using tests::DeviceLoop;
using Samples = DeviceLoop::Samples;

constexpr int32_t depth = DeviceLoop::depth;
constexpr int32_t rate = 48000;

// Noise, so that a frame has one place only; of 16 bits, which every way here keeps.
Samples noise(int32_t frames) {
    Samples samples = tests::Noise(frames, 3);
    std::ranges::for_each(samples, [](double& x) { x = std::floor(x * 20000.0) / 32768.0; });
    return samples;
}

// Where the samples from `first` on stand in the capture; far outside if they do not.
int32_t offsetOf(const Samples& captured, const Samples& played, int32_t first, int32_t count) {
    const auto at = std::search(captured.begin(), captured.end(), played.begin() + first,
                                played.begin() + first + count);
    return at == captured.end() ? INT32_MAX : static_cast<int32_t>(at - captured.begin()) - first;
}

// A busy machine misses deadlines, which the device counts: such a run shows nothing and is made
// again. `run` returns the device's xruns.
template <typename Run>
void makeUndisturbed(Run run) {
    constexpr int attempts = 8;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (run() == 0) {
            return;
        }
    }
    ADD_FAILURE() << "no run without an xrun in " << attempts;
}

class JackDevice : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(server.isUp) << server.process.log(); }
    tests::JackServer server;
};

TEST_F(JackDevice, WhatIsPlayedIsCapturedOutOfStepWithItsLatency) {
    const Samples played = noise(60000);
    for (const int32_t delay : {0, 2000}) {
        const tests::JackSpeaker speaker(delay);
        ASSERT_TRUE(speaker.isUp);
        int32_t offset = 0;
        makeUndisturbed([&] {
            CJackWave device("speaker");
            DeviceLoop loop(device);
            EXPECT_TRUE(loop.Open()) << device.refusal();
            offset = offsetOf(loop.Run(played, 65536), played, 0, 60000);
            EXPECT_EQ(device.Latency(), 1024 + delay);
            device.Stop();
            return device.xruns();
        });
        EXPECT_EQ(offset, 1024 + delay);
    }
}

TEST_F(JackDevice, ItsOwnPortsConnectedToEachOtherChangeAFrame) {
    const Samples played = noise(60000);
    int32_t offset = 0;
    makeUndisturbed([&] {
        CJackWave device;
        DeviceLoop loop(device);
        EXPECT_TRUE(loop.Open()) << device.refusal();
        EXPECT_TRUE(tests::ConnectJackPorts("tonvane:out_1", "tonvane:in_1"));
        offset = offsetOf(loop.Run(played, 65536), played, 0, 60000);
        device.Stop();
        return device.xruns();
    });
    EXPECT_EQ(offset, 1024) << "a period";
}

TEST_F(JackDevice, ItsCallbackTakesALockOrMemoryOrCallsTheSystem) {
    CJackWave device;
    DeviceLoop loop(device);
    ASSERT_TRUE(loop.Open()) << device.refusal();
    ASSERT_TRUE(device.Start());
    server.process.Freeze(true);  // so that this thread is the only one to call
    const auto seen = tests::Watch([&] {
        for (int i = 0; i < 100; ++i) {
            device.Process(1024);
        }
    });
    server.process.Freeze(false);
    if (!seen) {
        GTEST_SKIP() << "this kernel or this build does not show system calls";
    }
    EXPECT_EQ(seen->systemCall, -1);
    EXPECT_EQ(seen->locks, 0);
    EXPECT_EQ(seen->allocations, 0);
}

TEST_F(JackDevice, AServerThatEndsHoldsTheWorkers) {
    CJackWave device;
    DeviceLoop loop(device);
    ASSERT_TRUE(loop.Open()) << device.refusal();
    std::thread end([&] { server.process.End(); });
    loop.Run(Samples(1000000), 1000000);
    end.join();
    EXPECT_TRUE(device.isLost());
    device.Close();
    EXPECT_FALSE(loop.Open());
    EXPECT_EQ(device.refusal(), "There is no JACK server");
}

TEST_F(JackDevice, ARunThatCannotBeGoodIsOpened) {
    const WAVEFORMATEX slower = MakeWaveFormat(44100, 2, 32);
    CJackWave device;
    EXPECT_FALSE(device.Open(nullptr, &slower, depth, nullptr));
    EXPECT_EQ(device.refusal(),
              "Sample rate 44100 Hz is not supported: the JACK server runs at 48000 Hz");
    CJackWave other("nobody");
    EXPECT_FALSE(DeviceLoop(other).Open());
    EXPECT_THAT(other.refusal(), HasSubstr("\"nobody\""));
}

TEST(DeviceMenu, ADeviceIsMissingOrAServerIsStarted) {
    const auto namesAndIds = [] {
        std::vector<std::pair<int32_t, std::string>> list;
        for (const DeviceEntry& device : ListDevices()) {
            list.emplace_back(device.id, device.name);
        }
        return list;
    };
    using List = std::vector<std::pair<int32_t, std::string>>;
    testing::internal::CaptureStderr();
    {
        const tests::JackServer server;
        ASSERT_TRUE(server.isUp) << server.process.log();
        const tests::JackSpeaker speaker;
        EXPECT_EQ(
            namesAndIds(),
            (List{{200, "alsa"}, {201, "jack:system"}, {202, "jack:speaker"}, {300, "simulated"}}));
        const auto device = FindDevice(ListDevices(), "jack:speaker").make();
        EXPECT_TRUE(DeviceLoop(*device).Open());
    }
    EXPECT_EQ(namesAndIds(), (List{{200, "alsa"}, {300, "simulated"}})) << "without a server";
    EXPECT_EQ(FindDevice(ListDevices(), "201").make, nullptr);
    const auto pcm = FindDevice({}, "alsa:no such PCM").make();
    EXPECT_FALSE(DeviceLoop(*pcm).Open());
    EXPECT_THAT(RefusalOf(*pcm), HasSubstr("\"no such PCM\""));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(AlsaDevice, APauseHoldsTheWriterOrLosesTheDevice) {
    const tests::PulseServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const WAVEFORMATEX format = MakeWaveFormat(rate, 2, 16);
    const std::vector<int16_t> frames(2 * 100000);
    makeUndisturbed([&] {
        CAlsaWave device;
        EXPECT_TRUE(device.Open(nullptr, &format, depth, nullptr)) << device.refusal();
        std::thread writer([&] {
            EXPECT_EQ(device.Write(frames.data(), 40000), 40000);
            device.Stop();
            EXPECT_TRUE(device.Start());
            EXPECT_EQ(device.Write(frames.data(), 60000), 60000);
            device.FlushOutput();
            device.WaitEmpty();
        });
        device.WaitFilled();
        EXPECT_TRUE(device.Start());
        writer.join();
        EXPECT_FALSE(device.isLost());
        return device.xruns();
    });
}

TEST(AlsaDevice, AServerThatEndsHoldsTheWorkers) {
    tests::PulseServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    CAlsaWave device;
    DeviceLoop loop(device);
    ASSERT_TRUE(loop.Open()) << device.refusal();
    std::thread end([&] { server.process.End(); });
    loop.Run(Samples(10000000), 10000000);
    end.join();
    EXPECT_TRUE(device.isLost());
}

}  // namespace
}  // namespace tonvane
