// The devices on real servers without hardware: what is played is captured again.
#include <algorithm>
#include <thread>

#include <gmock/gmock.h>

#include "device/AudioServers.h"
#include "device/DeviceFaults.h"
#include "device/alsa/AlsaWave.h"
#include "device/jack/JackWave.h"
#include "device/menu/DeviceMenu.h"
#include "support/CallWatch.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::HasSubstr;

constexpr int32_t depth = 32768;
constexpr int32_t rate = 48000;
constexpr int32_t block = 256;

using Words = std::vector<int32_t>;

// Noise, so that a frame has one place only; of 16 bits, which every way here keeps.
Words noise(int32_t frames) {
    Words words;
    words.reserve(static_cast<size_t>(frames));
    for (const double sample : tests::Noise(frames, 3)) {
        words.push_back(static_cast<int32_t>(sample * 20000.0));
    }
    return words;
}

// Plays the words on the left channel and captures `frames` of it, by what the device's format is.
template <typename Sample>
class Loop {
  public:
    explicit Loop(CWaveDevice& device) : device_(device) {}

    bool Open() {
        const WAVEFORMATEX format = MakeWaveFormat(rate, 2, device_.BitsPerSample());
        return device_.Open(&format, &format, depth, nullptr);
    }

    Words Run(const Words& played, int32_t frames) {
        Words got;
        std::thread writer([&] { write(played); });
        std::thread reader([&] { got = read(frames); });
        device_.WaitFilled();
        device_.Start();
        writer.join();
        reader.join();
        device_.Stop();
        return got;
    }

  private:
    static constexpr int32_t scale = sizeof(Sample) == 4 ? 65536 : 1;

    size_t at(int32_t frame) const {
        return static_cast<size_t>(device_.IsInterleaved() ? 2 * frame : frame);
    }

    void write(const Words& played) {
        for (size_t first = 0; first < played.size(); first += block) {
            std::vector<Sample> frames(2 * block);
            for (int32_t i = 0; i < block && first + i < played.size(); ++i) {
                frames[at(i)] = static_cast<Sample>(played[first + i] * scale);
            }
            device_.Write(frames.data(), block);
        }
        device_.FlushOutput();
        device_.WaitEmpty();
    }

    Words read(int32_t count) {
        Words words;
        std::vector<Sample> frames(2 * block);
        while (static_cast<int32_t>(words.size()) < count &&
               device_.Read(frames.data(), block) == block) {
            for (int32_t i = 0; i < block; ++i) {
                words.push_back(frames[at(i)] / scale);
            }
        }
        return words;
    }

    CWaveDevice& device_;
};

// Where the words from `first` on stand in the capture; far outside if they do not.
int32_t offsetOf(const Words& captured, const Words& played, int32_t first, int32_t count) {
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

TEST(JackDevice, WhatIsPlayedIsCapturedOutOfStepWithItsLatency) {
    const tests::JackServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const Words played = noise(60000);
    for (const int32_t delay : {0, 2000}) {
        const tests::JackSpeaker speaker(delay);
        ASSERT_TRUE(speaker.isUp);
        int32_t offset = 0;
        makeUndisturbed([&] {
            CJackWave device("speaker");
            Loop<int32_t> loop(device);
            EXPECT_TRUE(loop.Open()) << device.refusal();
            offset = offsetOf(loop.Run(played, 65536), played, 0, 60000);
            EXPECT_EQ(device.Latency(), 1024 + delay);
            return device.xruns();
        });
        EXPECT_EQ(offset, 1024 + delay);
    }
}

TEST(JackDevice, ItsOwnPortsConnectedToEachOtherChangeAFrame) {
    const tests::JackServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const Words played = noise(60000);
    int32_t offset = 0;
    makeUndisturbed([&] {
        CJackWave device;
        Loop<int32_t> loop(device);
        EXPECT_TRUE(loop.Open()) << device.refusal();
        EXPECT_TRUE(tests::ConnectJackPorts("tonvane:out_1", "tonvane:in_1"));
        offset = offsetOf(loop.Run(played, 65536), played, 0, 60000);
        return device.xruns();
    });
    EXPECT_EQ(offset, 1024) << "a period";
}

TEST(JackDevice, ItsCallbackTakesALockOrMemoryOrCallsTheSystem) {
    tests::JackServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    CJackWave device;
    Loop<int32_t> loop(device);
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

TEST(JackDevice, AServerThatEndsHoldsTheWorkers) {
    tests::JackServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    CJackWave device;
    Loop<int32_t> loop(device);
    ASSERT_TRUE(loop.Open()) << device.refusal();
    std::thread end([&] { server.process.End(); });
    loop.Run(Words(1000000), 1000000);
    end.join();
    EXPECT_TRUE(device.isLost());
    device.Close();
    EXPECT_FALSE(loop.Open());
    EXPECT_EQ(device.refusal(), "There is no JACK server");
}

TEST(JackDevice, ARunThatCannotBeGoodIsOpened) {
    const tests::JackServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const WAVEFORMATEX slower = MakeWaveFormat(44100, 2, 32);
    CJackWave device;
    EXPECT_FALSE(device.Open(nullptr, &slower, depth, nullptr));
    EXPECT_EQ(device.refusal(),
              "Sample rate 44100 Hz is not supported: the JACK server runs at 48000 Hz");
    CJackWave other("nobody");
    EXPECT_FALSE(Loop<int32_t>(other).Open());
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
        EXPECT_TRUE(Loop<int32_t>(*device).Open());
    }
    EXPECT_EQ(namesAndIds(), (List{{200, "alsa"}, {300, "simulated"}})) << "without a server";
    EXPECT_EQ(FindDevice(ListDevices(), "201").make, nullptr);
    const auto pcm = FindDevice({}, "alsa:no such PCM").make();
    EXPECT_FALSE(Loop<int16_t>(*pcm).Open());
    EXPECT_THAT(RefusalOf(*pcm), HasSubstr("\"no such PCM\""));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(AlsaDevice, WhatIsPlayedIsCapturedWithGapsOrFarOutOfStep) {
    const tests::PulseServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const Words played = noise(150000);
    CAlsaWave device;
    Loop<int16_t> loop(device);
    for (int run = 0; run < 3; ++run) {
        int32_t offset = 0;
        makeUndisturbed([&] {
            EXPECT_TRUE(loop.Open()) << device.refusal();
            offset = offsetOf(loop.Run(played, 180224), played, 20000, 125000);
            const int32_t xruns = device.xruns();
            device.Close();
            return xruns;
        });
        // The alignment of a measurement bears half a period of it either way.
        EXPECT_LT(std::abs(offset), 16384) << server.process.log();
        RecordProperty("offset" + std::to_string(run), offset);
    }
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
    Loop<int16_t> loop(device);
    ASSERT_TRUE(loop.Open()) << device.refusal();
    std::thread end([&] { server.process.End(); });
    loop.Run(Words(10000000), 10000000);
    end.join();
    EXPECT_TRUE(device.isLost());
}

}  // namespace
}  // namespace tonvane
