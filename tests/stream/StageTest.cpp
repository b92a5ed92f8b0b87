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
        source.Allocate(1, 24, true);
        sink.Push(source);
        EXPECT_EQ(source.position, 0) << "other channels have been moved";
    }
}

class DeviceWidths : public tests::WithFftTables, public testing::WithParamInterface<int> {};

// Half a step is added and the fraction cut off; the ends of the range are exact.
TEST_P(DeviceWidths, SamplesBecomeTheDevicesIntegersAndIntegersSamples) {
    const int bits = GetParam();
    const double full = std::ldexp(1.0, bits - 1);
    const auto most = static_cast<int64_t>(full) - 1;
    const Samples played{1.0,         2.0,         -1.0,         -2.0,
                         NAN,         0.4 / full,  0.6 / full,   -0.4 / full,
                         -1.4 / full, -1.6 / full, 100.0 / full, -100.0 / full};
    const std::vector<int64_t> words{most, most, -most - 1, -most - 1, most, 0,
                                     1,    0,    0,         -1,        100,  -99};
    for (const bool interleaved : {true, false}) {
        CSimulatedWave wire(SimulatedSetup{.bits = bits, .interleaved = interleaved});
        const WAVEFORMATEX format = MakeWaveFormat(48000, 2, bits);
        ASSERT_TRUE(wire.Open(&format, &format, 32768, nullptr));
        wire.Start();
        CWaveOutStream out;
        CWaveInStream in;
        Recorder sink(256, interleaved);
        out.device = in.device = &wire;
        in.next = &sink;
        ASSERT_TRUE(out.Configure(MakeWaveFormat(48000, 2, 16)) && in.Configure(format));
        EXPECT_EQ(out.outputFormat, format);
        for (int block = 0; block < 2; ++block) {
            CStreamBuffer source;
            source.Allocate(2, 256, true);
            std::ranges::copy(played, source.data);
            out.Push(source);
        }
        EXPECT_EQ(out.framesPlayed, 512);
        wire.FlushOutput();

        std::string expected;
        for (size_t i = 0; i < words.size(); ++i) {
            const size_t word = interleaved ? i : 2 * i % 12 + 2 * i / 12;
            expected += tests::LittleEndian(static_cast<uint64_t>(words[word]),
                                            static_cast<size_t>(bits / 8));
        }
        std::string got(expected.size(), '\0');
        wire.Read(got.data(), 6);
        EXPECT_EQ(got, expected);
        in.Discard(250);
        ASSERT_TRUE(in.ReadBlock());
        for (size_t i = 0; i < words.size(); ++i) {
            EXPECT_EQ(sink.heard.at(i % 2).at(i / 2), static_cast<double>(words[i]) / full) << i;
        }
        EXPECT_EQ(in.framesCaptured, 506);
        EXPECT_EQ(in.clippedSamples, 5);
        EXPECT_EQ(in.peak, 1.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Bits, DeviceWidths, testing::Values(16, 24, 32));

}  // namespace
}  // namespace tonvane
