// Wave files as the source and the sink of a chain.
#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "stream/InputWaveFileStream.h"
#include "stream/OutputWaveFileStream.h"
#include "support/WaveBytes.h"

namespace tonvane {
namespace {

// The numbers of the frames that it is given, from the left channel.
struct FrameNumbers : CDspStream {
    bool Open() override { return inputBuffer.Allocate(inputFormat.channels, 256, true); }
    void Process(const double* in, double* /*out*/) override {
        for (int i = 0; i < 256; ++i) {
            heard.push_back(static_cast<int>(in[2 * i] * 32768.0));
        }
    }
    // Of the last block: the first frame, and the last.
    [[nodiscard]] std::pair<int, int> lastBlock() const {
        return {heard.at(heard.size() - 256), heard.back()};
    }
    std::vector<int> heard;
};

class InputFile : public testing::Test {
  protected:
    void open(int32_t frames, uint32_t channels = 2, CDspStream* next = nullptr) {
        const std::string path =
            folder.write("in.wav", tests::CountingWave(1000, channels, frames));
        stage.next = next == nullptr ? &sink : next;
        ASSERT_TRUE(stage.Load(path.c_str()));
        ASSERT_TRUE(stage.Reopen());
    }

    tests::TemporaryFolder folder;
    StreamStatus status;
    CInputWaveFileStream stage{status};
    FrameNumbers sink;
};

TEST_F(InputFile, AFileOfWholeBlocksEndsAndAnyOtherGoesOnFromItsStart) {
    const struct {
        int32_t frames;
        std::vector<bool> goesOn;  // behind each block
        std::pair<int, int> lastBlock;
        double position;  // behind it, in seconds
    } cases[] = {{512, {true, false}, {257, 512}, 0.512},
                 {300, {true, true}, {257, 212}, 0.212},
                 {0, {false}, {0, 0}, 0.0}};
    for (const auto& c : cases) {
        open(c.frames);
        EXPECT_EQ(stage.DurationSeconds(), c.frames / 1000.0);
        for (const bool goesOn : c.goesOn) {
            EXPECT_EQ(stage.ReadBlock(), goesOn) << c.frames;
        }
        EXPECT_EQ(sink.lastBlock(), c.lastBlock);
        EXPECT_EQ(stage.PositionSeconds(), c.position);
        stage.CloseChain();
        EXPECT_EQ(stage.PositionSeconds(), 0.0);
    }
}

TEST_F(InputFile, TheNewestSeekIsServedWithTheNextBlock) {
    open(1024);
    EXPECT_TRUE(stage.ReadBlock());
    stage.RequestSeek(0.1);
    stage.RequestSeek(0.5009);
    EXPECT_EQ(stage.PositionSeconds(), 0.5);
    EXPECT_TRUE(stage.ReadBlock());
    EXPECT_EQ(sink.lastBlock(), std::pair(501, 756));
    EXPECT_EQ(stage.PositionSeconds(), 0.756);
    for (const auto& [target, first] : {std::pair{7e9, 1}, {-1.0, 1}, {1.024, 1}}) {
        stage.RequestSeek(target);
        EXPECT_TRUE(stage.ReadBlock());
        EXPECT_EQ(sink.lastBlock().first, first) << target;
    }
}

// The head says what it was told, and the samples are those of the blocks.
TEST_F(InputFile, WhatPassesIsRecordedWhateverTheFilesHeadSaysOfChannels) {
    const struct {
        uint32_t channels, channelsOfHead, bits;
    } cases[] = {{2, 2, 24}, {1, 8, 16}, {1, 2, 16}, {2, 1, 16}};
    for (const auto& c : cases) {
        COutputWaveFileStream recorder;
        recorder.path = folder / "out.wav";
        recorder.format =
            MakeWaveFormat(8000, static_cast<int>(c.channelsOfHead), static_cast<int>(c.bits));
        open(512, c.channels, &recorder);
        EXPECT_TRUE(stage.ReadBlock());
        EXPECT_FALSE(stage.ReadBlock());
        stage.CloseChain();

        const size_t bytes = c.bits / 8;
        std::string samples;
        for (uint64_t i = 1; i <= 512; ++i) {
            samples += tests::LittleEndian(i << (c.bits - 16), bytes) +
                       std::string((c.channels - 1) * bytes, '\0');
        }
        EXPECT_EQ(tests::Contents(recorder.path),
                  tests::WaveBytes({tests::pcm, c.channelsOfHead, c.bits, 8000}, samples))
            << c.channels << " in " << c.channelsOfHead;
    }
}

}  // namespace
}  // namespace tonvane
