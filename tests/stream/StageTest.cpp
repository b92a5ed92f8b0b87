// Single stages and how they hand blocks on.
#include <cmath>

#include <gmock/gmock.h>

#include "device/simulated/SimulatedWave.h"
#include "stream/WaveInStream.h"
#include "stream/WaveOutStream.h"
#include "support/Signals.h"
#include "support/WaveBytes.h"

namespace tonvane {
namespace {

using Samples = std::vector<double>;

// Keeps what it is given, channel by channel.
struct Recorder : CDspStream {
    Recorder(int32_t frames, bool isInterleaved) : blockFrames(frames), layout(isInterleaved) {}

    bool Open() override { return inputBuffer.Allocate(inputFormat.channels, blockFrames, layout); }
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

TEST(DspStream, BlocksOfAnySizeFeedBlocksOfAnySizeInEitherLayout) {
    for (const auto& [fromInterleaved, toInterleaved] :
         {std::pair{true, true}, {true, false}, {false, true}, {false, false}}) {
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
        Samples up(23);
        std::iota(up.begin(), up.end(), 2.0);
        up.resize(28, 0.0);
        EXPECT_EQ(sink.heard.at(0), up);
        std::ranges::transform(up, up.begin(), std::negate());
        EXPECT_EQ(sink.heard.at(1), up);
        sink.Flush();
        EXPECT_EQ(sink.blocks, 4) << "an empty block has been run";
    }
}

TEST(DspStream, AChainThatDisagreesOnChannelsMovesNothing) {
    Recorder sink(4, true);
    ASSERT_TRUE(sink.Configure(MakeWaveFormat(48000, 1, 16)));
    CStreamBuffer source;
    fill(source, 24, true);
    sink.Push(source);
    EXPECT_EQ(source.position, 0);
    EXPECT_EQ(sink.blocks, 0);
}

// A wire of so many bits, and the bytes of its samples.
class DeviceWidths : public tests::WithFftTables, public testing::WithParamInterface<int> {
  protected:
    void open(bool interleaved) {
        device.emplace(SimulatedSetup{.bits = bits, .interleaved = interleaved});
        const WAVEFORMATEX format = MakeWaveFormat(48000, 2, bits);
        ASSERT_TRUE(device->Open(&format, &format, 32768, nullptr));
        device->Start();
    }
    [[nodiscard]] std::string bytesOf(const std::vector<int64_t>& words) const {
        std::string bytes;
        for (const int64_t word : words) {
            bytes +=
                tests::LittleEndian(static_cast<uint64_t>(word), static_cast<size_t>(bits / 8));
        }
        return bytes;
    }

    const int bits = GetParam();
    const int64_t fullScale = int64_t{1} << (bits - 1);
    std::optional<CSimulatedWave> device;
};

// Half a step is added and the fraction cut off; the ends of the range are exact.
TEST_P(DeviceWidths, PlayedSamplesAreTheDevicesIntegers) {
    open(true);
    CWaveOutStream stage;
    stage.device = &*device;
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
    EXPECT_EQ(stage.framesPlayed, 256);
    device->FlushOutput();
    const int64_t most = fullScale - 1;
    const std::string expected =
        bytesOf({most, most, -fullScale, -fullScale, most, 0, 1, 0, 0, -1, 100, -99});
    std::string got(expected.size(), '\0');
    device->Read(got.data(), 6);
    EXPECT_EQ(got, expected);
}

TEST_P(DeviceWidths, CapturedIntegersAreSamplesAtFullScaleOne) {
    for (const bool interleaved : {true, false}) {
        std::vector<int64_t> words(512, 99);  // of the block that is thrown away
        open(interleaved);
        device->Write(bytesOf(words).data(), 256);
        for (int64_t i = 0; i < 512; ++i) {
            words[i] = (i % 2 == 0 ? i : -i) - 1;
        }
        words[0] = fullScale - 1;
        words[3] = -fullScale;
        device->Write(bytesOf(words).data(), 256);
        device->FlushOutput();
        CWaveInStream stage;
        Recorder sink(256, interleaved);
        stage.device = &*device;
        stage.next = &sink;
        ASSERT_TRUE(stage.Configure(MakeWaveFormat(48000, 2, bits)));
        stage.Discard(256);
        ASSERT_TRUE(stage.ReadBlock());
        for (size_t i = 0; i < 512; ++i) {
            const Samples& channel = sink.heard.at(interleaved ? i % 2 : i / 256);
            ASSERT_EQ(channel.at(interleaved ? i / 2 : i % 256),
                      static_cast<double>(words[i]) / static_cast<double>(fullScale))
                << i;
        }
        EXPECT_EQ(stage.framesCaptured, 512);
        EXPECT_EQ(stage.clippedSamples, 2);
        EXPECT_EQ(stage.peak, 1.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Bits, DeviceWidths, testing::Values(16, 24, 32));

}  // namespace
}  // namespace tonvane
