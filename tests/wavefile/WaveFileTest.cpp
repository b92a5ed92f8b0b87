// Wave files against SoX and against the layout of the format.
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "support/Signals.h"
#include "support/WaveBytes.h"
#include "wavefile/WaveFile.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using tests::Chunk;
using tests::Contents;
using tests::FormatBytes;
using tests::LittleEndian;
using tests::pcm;
using tests::RiffBytes;
using Samples = std::vector<double>;

class WaveFile : public testing::Test {
  protected:
    // In the folder.
    void run(const std::string& line) const {
        const std::string command = "cd '" + folder.path() + "' && " + line;
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }

    void write(const Samples& samples, int32_t bits = 16, int32_t channels = 1) {
        ASSERT_TRUE(file.Create(folder / "x.wav", 48000, bits, channels));
        file.Write(samples);
        file.Close();
    }

    // Rate, bits and channels; none for a file that is refused.
    std::vector<int32_t> open(const std::string& path) {
        std::vector<int32_t> head(3);
        return file.Open(path, head[0], head[1], head[2]) ? head : std::vector<int32_t>();
    }

    Samples readAll(const std::string& path) {
        const std::vector<int32_t> head = open(path);
        Samples samples(head.empty() ? 0 : static_cast<size_t>(file.FramesLeft() * head[2]));
        file.Read(samples.data(), file.FramesLeft());
        file.Close();
        return samples;
    }

    tests::TemporaryFolder folder;
    CWaveFile file;
};

// SoX takes and gives raw samples of 32 bits, the integers in the upper ones. The file that it
// writes has a comment, which is a chunk of its own, and from 24 bits on a longer format chunk.
TEST_F(WaveFile, HasTheSamplesThatSoxWritesAndReadsInEveryWidth) {
    for (const int32_t bits : {8, 16, 24, 32}) {
        const double fullScale = std::ldexp(1.0, bits - 1);
        Samples samples{-1.0, 1.0 - 1.0 / fullScale, 0.0, -1.0 / fullScale};
        for (const double sample : tests::Noise(1000, 9)) {
            samples.push_back(std::floor(sample * fullScale) / fullScale);
        }
        std::string raw;
        for (const double sample : samples) {
            raw += LittleEndian(static_cast<uint64_t>(std::llround(sample * 0x1p31)), 4);
        }
        write(samples, bits, 2);
        run("sox -D x.wav -t raw -e signed -b 32 back.raw");
        EXPECT_TRUE(Contents(folder / "back.raw") == raw) << bits << " bits";
        folder.write("in.raw", raw);
        run("sox -D -t raw -r 44100 -c 2 -e signed -b 32 in.raw --comment odd -b " +
            std::to_string(bits) + (bits == 8 ? " -e unsigned" : " -e signed") + " theirs.wav");
        EXPECT_EQ(readAll(folder / "theirs.wav"), samples) << bits << " bits";
        EXPECT_THAT(open(folder / "theirs.wav"), ElementsAre(44100, bits, 2));
        file.Close();
    }
}

const std::string twoFrames = LittleEndian(0x4000, 2) + LittleEndian(0xC000, 2);  // 0.5, -0.5
const std::string data = Chunk("data", twoFrames);
const std::string head = Chunk("fmt ", FormatBytes({}));

std::string headOf(uint32_t channels, uint32_t bits) {
    return Chunk("fmt ", FormatBytes({pcm, channels, bits}));
}

TEST_F(WaveFile, IsReadWithMoreAroundItThanItNeedsAndRefusedWithoutAHead) {
    const std::pair<const char*, std::string> good[] = {
        {"ahead", Chunk("LIST", "four") + head + data},
        {"between", head + Chunk("fact", "1234") + data},
        {"odd size, without a pad", Chunk("junk", "odd") + head + data},
        {"longer format", Chunk("fmt ", FormatBytes({}) + "and more") + data},
        {"behind", head + data + Chunk("cue ", "1234")},
        {"12 bits", headOf(1, 12) + data},
        {"cut short", head + "data" + LittleEndian(4000, 4) + twoFrames},
        {"endless", head + "data" + LittleEndian(0xFFFFFFFFU, 4) + twoFrames},
    };
    for (const auto& [what, chunks] : good) {
        EXPECT_THAT(readAll(folder.write("x.wav", RiffBytes(chunks))), ElementsAre(0.5, -0.5))
            << what;
    }
    for (const std::string& bad :
         {std::string(), Chunk("RIFX", "WAVE" + head + data), Chunk("RIFF", "AVI " + head + data),
          RiffBytes(data), RiffBytes(head), RiffBytes(Chunk("fmt ", "short")),
          RiffBytes(headOf(0, 16) + data), RiffBytes(headOf(1, 0) + data),
          RiffBytes(headOf(1, 64) + data)}) {
        EXPECT_THAT(open(folder.write("x.wav", bad)), testing::IsEmpty()) << bad;
        EXPECT_FALSE(file.isOpen()) << bad;
    }
}

TEST_F(WaveFile, HasFloatsOnlyForWhoTakesThem) {
    const std::string samples = LittleEndian(0x3F000000, 4) + LittleEndian(0x7FC00000, 4);  // NaN
    const std::string format = FormatBytes({tests::floating, 1, 32});
    const std::string extensible = LittleEndian(0xFFFE, 2) + format.substr(2) +
                                   LittleEndian(22, 8) + LittleEndian(tests::floating, 8) +
                                   LittleEndian(0, 8);
    for (const std::string& chunk : {format, extensible}) {
        const std::string path =
            folder.write("x.wav", RiffBytes(Chunk("fmt ", chunk) + Chunk("data", samples)));
        file.takesFloats = true;
        EXPECT_THAT(readAll(path), ElementsAre(0.5, 0.0));
        EXPECT_EQ(file.sampleTag(), CWaveFile::floats);
        file.takesFloats = false;
        EXPECT_THAT(readAll(path), ElementsAre(0x3F000000 / 0x1p31, 0x7FC00000 / 0x1p31));
    }
}

TEST_F(WaveFile, CanBeLongerThan2GiB) {
    constexpr uint64_t bytes = 3'000'000'000;
    const std::string path = folder.write("x.wav", "RIFF" + LittleEndian(bytes + 36, 4) + "WAVE" +
                                                       head + "data" + LittleEndian(bytes, 4));
    std::filesystem::resize_file(path, bytes + 44);
    open(path);
    EXPECT_EQ(file.FramesLeft(), 1'500'000'000);
    file.SeekFrame(1'400'000'000);
    EXPECT_EQ(file.FramesLeft(), 100'000'000);
}

TEST_F(WaveFile, RoundsToTheNearestStepWithinFullScale) {
    const double step = 1.0 / 32768.0;
    write({1.0, 2.0, -1.0, -9.0, 0.5 * step, 0.49 * step, -0.5 * step, -0.51 * step, NAN});
    std::string words;
    for (const int32_t word : {32767, 32767, -32768, -32768, 1, 0, 0, -1, -32768}) {
        words += LittleEndian(static_cast<uint64_t>(word), 2);
    }
    EXPECT_EQ(Contents(folder / "x.wav"), tests::WaveBytes({.rate = 48000}, words));
    write({});
    EXPECT_EQ(Contents(folder / "x.wav"), tests::WaveBytes({.rate = 48000}, ""));
}

TEST_F(WaveFile, SeeksToAFrameAndHasNoneBehindItsEnd) {
    write({0.25, 0.5, 0.75});
    open(folder / "x.wav");
    double sample = 0.0;
    file.SeekFrame(1);
    EXPECT_EQ(file.FramesLeft(), 2);
    file.Read(&sample, 1);
    EXPECT_EQ(sample, 0.5);
    file.SeekFrame(1000);
    EXPECT_EQ(file.FramesLeft(), 0);
    file.Read(&sample, 1);
    EXPECT_FALSE(file.isBroken());
    file.SeekFrame(0);
    std::filesystem::resize_file(folder / "x.wav", 44);
    file.Read(&sample, 1);
    EXPECT_TRUE(file.isBroken());
    EXPECT_EQ(file.FramesLeft(), 0);
}

TEST(RiffFile, ReportsWhatCannotBeDone) {
    const tests::TemporaryFolder folder;
    CRiffFile file;
    RiffTag form = 0;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(file.OpenForReading(folder / "none", form));
    EXPECT_FALSE(file.OpenForWriting(folder / "none/none", form));
    EXPECT_TRUE(file.OpenForWriting(folder / "x", MakeRiffTag("TEST")));
    EXPECT_FALSE(file.OpenForWriting(folder / "y", form));
    file.EndChunk();
    file.EndChunk();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "can't open file " + folder / "none" + " for reading\ncan't open file " +
                  folder / "none/none" + " for writing\nfile already open\nno chunk to close\n");
}

}  // namespace
}  // namespace tonvane
