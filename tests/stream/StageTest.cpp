// Single stages and how they hand blocks on.
#include <cmath>

#include <gmock/gmock.h>

#include "stream/EqStream.h"
#include "stream/ScriptedDevice.h"
#include "stream/WaveInStream.h"
#include "stream/WaveOutStream.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using Bytes = std::vector<uint8_t>;
using Samples = std::vector<double>;

// Keeps what it is given, channel by channel.
struct Recorder : CDspStream {
    Recorder(int32_t frames, bool isInterleaved) : blockFrames(frames), layout(isInterleaved) {}

    bool Open() override {
        events += "open ";
        return opens && inputBuffer.Allocate(inputFormat.channels, blockFrames, layout);
    }
    void Close() override { events += "close "; }
    void Process(const double* in, double* /*out*/) override {
        ++blocks;
        heard.resize(static_cast<size_t>(inputBuffer.channels));
        for (int32_t i = 0; i < blockFrames * inputBuffer.channels; ++i) {
            const int32_t channel = layout ? i % inputBuffer.channels : i / blockFrames;
            heard[static_cast<size_t>(channel)].push_back(in[i]);
        }
    }

    int32_t blockFrames;
    bool layout;
    bool opens = true;
    std::string events;
    int blocks = 0;
    std::vector<Samples> heard;
};

// Channel 0 counts up from 1, channel 1 down from -1.
void fill(CStreamBuffer& buffer, int32_t frames, bool isInterleaved) {
    buffer.Allocate(2, frames, isInterleaved);
    for (int32_t i = 0; i < frames; ++i) {
        buffer.data[isInterleaved ? 2 * i : i] = i + 1;
        buffer.data[isInterleaved ? 2 * i + 1 : frames + i] = -(i + 1);
    }
}

class Layouts : public testing::TestWithParam<std::tuple<bool, bool>> {};

TEST_P(Layouts, BlocksOfAnySizeFeedBlocksOfAnySize) {
    const auto [fromInterleaved, toInterleaved] = GetParam();
    Recorder sink(7, toInterleaved);
    ASSERT_TRUE(sink.Configure(MakeWaveFormat(48000, 2, 16)));
    CStreamBuffer source;
    fill(source, 24, fromInterleaved);
    source.position = 1;
    sink.Push(source);
    EXPECT_EQ(source.position, 24);
    EXPECT_EQ(sink.blocks, 3);
    EXPECT_EQ(sink.inputBuffer.position, 2);
    sink.Flush();
    Samples up;
    for (int i = 2; i <= 24; ++i) {
        up.push_back(i);
    }
    up.resize(28, 0.0);
    Samples down;
    for (const double x : up) {
        down.push_back(-x);
    }
    EXPECT_EQ(sink.heard.at(0), up);
    EXPECT_EQ(sink.heard.at(1), down);
    sink.Flush();
    EXPECT_EQ(sink.blocks, 4) << "an empty block has been run";
}

INSTANTIATE_TEST_SUITE_P(All, Layouts, testing::Combine(testing::Bool(), testing::Bool()));

TEST(DspStream, AChainThatDisagreesOnChannelsMovesNothing) {
    Recorder sink(4, true);
    ASSERT_TRUE(sink.Configure(MakeWaveFormat(48000, 1, 16)));
    CStreamBuffer source;
    fill(source, 24, true);
    sink.Push(source);
    EXPECT_EQ(source.position, 0);
    EXPECT_EQ(sink.blocks, 0);
}

TEST(DspStream, AStageThatDoesNotOpenClosesTheStagesAheadOfIt) {
    Recorder stages[] = {{4, true}, {4, true}, {4, true}};
    stages[0].next = &stages[1];
    stages[1].next = &stages[2];
    stages[1].opens = false;
    EXPECT_FALSE(stages[0].Configure(MakeWaveFormat(48000, 2, 16)));
    EXPECT_EQ(stages[0].events + "| " + stages[1].events + "| " + stages[2].events,
              "open close | open close | ");
}

// The road of a measurement to the device: 32768 frames to 1024 to 256.
TEST(DspStream, ALongBlockRunsAShortStageOnceForEachOfItsBlocks) {
    CEqStream filter;
    Recorder sink(256, true);
    filter.next = &sink;
    ASSERT_TRUE(filter.Configure(MakeWaveFormat(48000, 2, 16)));
    CStreamBuffer source;
    fill(source, 32768, false);
    filter.Push(source);
    EXPECT_EQ(sink.blocks, 128);
    EXPECT_THAT(sink.heard.at(1), ElementsAreArray(&source.data[32768], 32768));
}

TEST(DspStream, ConstantsArePushedAtTheScaleOfTheFormat) {
    Recorder source(4, true);
    Recorder sink(4, true);
    source.next = &sink;
    ASSERT_TRUE(source.Configure(MakeWaveFormat(48000, 2, 16)));
    ASSERT_TRUE(source.outputBuffer.Allocate(2, 4, false));
    source.PushConstant(8192, 6);
    EXPECT_EQ(sink.heard.at(0), Samples(4, 0.25));
    EXPECT_EQ(source.outputBuffer.position, 2);
}

// Little-endian bytes of whole numbers.
Bytes bytesOf(const std::vector<int64_t>& words, size_t width) {
    Bytes bytes;
    for (const int64_t word : words) {
        for (size_t i = 0; i < width; ++i) {
            bytes.push_back(static_cast<uint8_t>(word >> (8 * i)));
        }
    }
    return bytes;
}

struct Width {
    int bits;
    int64_t fullScale;
};

class DeviceWidths : public testing::TestWithParam<Width> {};

// Half a step is added and the fraction cut off; the ends of the range are exact.
TEST_P(DeviceWidths, PlayedSamplesAreTheDevicesIntegers) {
    const auto [bits, fullScale] = GetParam();
    tests::ScriptedDevice device;
    device.bits = bits;
    device.frameBytes = 2 * static_cast<size_t>(bits) / 8;
    CWaveOutStream stage;
    stage.device = &device;
    ASSERT_TRUE(stage.Configure(MakeWaveFormat(48000, 2, 16)));
    EXPECT_EQ(stage.outputFormat, MakeWaveFormat(48000, 2, bits));
    const auto full = static_cast<double>(fullScale);
    const Samples played{1.0,         2.0,         -1.0,         -2.0,
                         NAN,         0.4 / full,  0.6 / full,   -0.4 / full,
                         -1.4 / full, -1.6 / full, 100.0 / full, -100.0 / full};
    CStreamBuffer source;
    source.Allocate(2, 256, true);
    std::ranges::copy(played, source.data);
    stage.Push(source);
    const int64_t most = fullScale - 1;
    Bytes expected = bytesOf({most, most, -fullScale, -fullScale, most, 0, 1, 0, 0, -1, 100, -99},
                             static_cast<size_t>(bits) / 8);
    EXPECT_EQ(stage.framesPlayed, 256);
    ASSERT_EQ(device.written.size(), 256 * device.frameBytes);
    device.written.resize(expected.size());
    EXPECT_EQ(device.written, expected);
}

TEST_P(DeviceWidths, CapturedIntegersAreSamplesAtFullScaleOne) {
    const auto [bits, fullScale] = GetParam();
    for (const bool interleaved : {true, false}) {
        tests::ScriptedDevice device;
        device.bits = bits;
        device.interleaved = interleaved;
        device.frameBytes = 2 * static_cast<size_t>(bits) / 8;
        std::vector<int64_t> words(1024, 0);
        for (size_t i = 0; i < 512; ++i) {
            words[512 + i] = static_cast<int64_t>(i % 2 == 0 ? i : -i) - 1;
        }
        words[512] = fullScale - 1;
        words[515] = -fullScale;
        words[1023] = -fullScale / 2;
        device.toRead = bytesOf(words, device.frameBytes / 2);
        CWaveInStream stage;
        Recorder sink(256, interleaved);
        stage.device = &device;
        stage.next = &sink;
        ASSERT_TRUE(stage.Configure(MakeWaveFormat(48000, 2, bits)));
        stage.Discard(256);
        ASSERT_TRUE(stage.ReadBlock());
        for (size_t i = 0; i < 512; ++i) {
            const size_t channel = interleaved ? i % 2 : i / 256;
            const size_t frame = interleaved ? i / 2 : i % 256;
            ASSERT_EQ(sink.heard.at(channel).at(frame),
                      static_cast<double>(words[512 + i]) / static_cast<double>(fullScale))
                << i;
        }
        EXPECT_EQ(stage.framesCaptured, 512);
        EXPECT_EQ(stage.clippedSamples, 2);
        EXPECT_EQ(stage.peak, 1.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Bits, DeviceWidths,
                         testing::Values(Width{16, 1 << 15}, Width{24, 1 << 23},
                                         Width{32, int64_t{1} << 31}),
                         [](const auto& instance) { return std::to_string(instance.param.bits); });

}  // namespace
}  // namespace tonvane
