// Wave files against SoX and against the layout of the format.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "support/Signals.h"
#include "wavefile/WaveFile.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using tests::TemporaryFolder;
using Samples = std::vector<double>;

constexpr int32_t allBits[] = {8, 16, 24, 32};

class WaveFile : public testing::Test {
  protected:
    // In the folder.
    void run(const std::string& line) const {
        const std::string command = "cd '" + folder.path() + "' && " + line;
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }

    Samples readAll(const std::string& path) {
        Samples samples;
        if (file.Open(path, rate, bits, channels)) {
            const int32_t frames = file.FramesLeft();
            samples.resize(static_cast<size_t>(frames) * static_cast<size_t>(channels));
            file.Read(samples.data(), frames);
        }
        return samples;
    }

    TemporaryFolder folder;
    CWaveFile file;
    int32_t rate = 0;
    int32_t bits = 0;
    int32_t channels = 0;
};

// Integers of so many bits that reach both ends of their range, for two channels.
std::vector<int32_t> integers(int32_t bits) {
    const double half = std::ldexp(1.0, bits - 1);
    std::vector<int32_t> values{static_cast<int32_t>(-half), static_cast<int32_t>(half - 1.0), 0,
                                -1};
    for (const double sample : tests::Noise(1000, 9)) {
        values.push_back(static_cast<int32_t>(std::floor(sample * half)));
    }
    return values;
}

// What SoX takes and gives as raw samples: 32 bits, the integers in the upper ones.
std::string rawOf(const std::vector<int32_t>& values, int32_t bits) {
    std::string raw(values.size() * sizeof(int32_t), '\0');
    for (size_t i = 0; i < values.size(); ++i) {
        const uint32_t word = static_cast<uint32_t>(values[i]) << (32 - bits);
        std::memcpy(&raw[i * sizeof word], &word, sizeof word);
    }
    return raw;
}

Samples samplesOf(const std::vector<int32_t>& values, int32_t bits) {
    Samples samples;
    samples.reserve(values.size());
    for (const int32_t value : values) {
        samples.push_back(value / std::ldexp(1.0, bits - 1));
    }
    return samples;
}

TEST_F(WaveFile, SoxReadsOtherSamplesThanWereWritten) {
    for (const int32_t width : allBits) {
        const std::vector<int32_t> values = integers(width);
        const Samples samples = samplesOf(values, width);
        ASSERT_TRUE(file.Create(folder / "ours.wav", 44100, width, 2));
        file.Write(samples.data(), 2);
        file.Write(samples.data() + 4, static_cast<int32_t>(samples.size()) / 2 - 2);
        file.Close();
        run("sox -D ours.wav -t raw -e signed -b 32 back.raw");
        EXPECT_EQ(tests::Contents(folder / "back.raw"), rawOf(values, width)) << width << " bits";
        run("(soxi -r ours.wav && soxi -b ours.wav && soxi -c ours.wav) > said");
        EXPECT_EQ(tests::Contents(folder / "said"), "44100\n" + std::to_string(width) + "\n2\n");
    }
}

TEST_F(WaveFile, OtherSamplesAreReadThanSoxWrote) {
    for (const int32_t width : allBits) {
        const std::vector<int32_t> values = integers(width);
        const std::string coding = width == 8 ? "unsigned" : "signed";
        folder.write("in.raw", rawOf(values, width));
        // With a comment, which is a chunk of its own, and from 24 bits on a longer format chunk.
        run("sox -D -t raw -r 48000 -c 2 -e signed -b 32 in.raw --comment odd -e " + coding +
            " -b " + std::to_string(width) + " theirs.wav");
        EXPECT_EQ(readAll(folder / "theirs.wav"), samplesOf(values, width)) << width << " bits";
        EXPECT_THAT((std::vector{rate, bits, channels}), ElementsAre(48000, width, 2));
        file.Close();
    }
}

std::string word(uint32_t value, size_t bytes) {
    std::string text;
    for (size_t i = 0; i < bytes; ++i) {
        text += static_cast<char>(value >> (8 * i));
    }
    return text;
}

std::string chunk(const std::string& tag, const std::string& content) {
    return tag + word(static_cast<uint32_t>(content.size()), 4) + content;
}

// The format chunk's content for 16 bits, mono, 8000 Hz.
std::string format(uint32_t channels = 1, uint32_t bits = 16) {
    return word(1, 2) + word(channels, 2) + word(8000, 4) + word(8000 * channels * bits / 8, 4) +
           word(channels * bits / 8, 2) + word(bits, 2);
}

std::string wave(const std::string& chunks) {
    return chunk("RIFF", "WAVE" + chunks);
}

const std::string twoFrames = word(0x4000, 2) + word(0xC000, 2);  // 0.5, -0.5

TEST_F(WaveFile, AFileWithMoreThanItNeedsIsRefusedOrMisread) {
    const std::string samples = chunk("data", twoFrames);
    const std::pair<const char*, std::string> table[] = {
        {"plain", wave(chunk("fmt ", format()) + samples)},
        {"ahead", wave(chunk("LIST", "four") + chunk("fmt ", format()) + samples)},
        {"between", wave(chunk("fmt ", format()) + chunk("fact", "1234") + samples)},
        {"odd size, without a pad", wave(chunk("junk", "odd") + chunk("fmt ", format()) + samples)},
        {"longer format", wave(chunk("fmt ", format() + "and more") + samples)},
        {"behind", wave(chunk("fmt ", format()) + samples + chunk("cue ", "1234"))},
        {"12 bits", wave(chunk("fmt ", format(1, 12)) + samples)},
        {"cut short", wave(chunk("fmt ", format()) + "data" + word(4000, 4) + twoFrames)},
        {"endless", wave(chunk("fmt ", format()) + "data" + word(0xFFFFFFFFU, 4) + twoFrames)},
    };
    for (const auto& [what, contents] : table) {
        EXPECT_THAT(readAll(folder.write("x.wav", contents)), ElementsAre(0.5, -0.5)) << what;
        EXPECT_EQ(bits, 16) << what;
        file.Close();
    }
}

TEST_F(WaveFile, AFileWithoutAUsableHeadIsOpened) {
    const std::string samples = chunk("data", twoFrames);
    const std::pair<const char*, std::string> table[] = {
        {"empty", ""},
        {"no RIFF", chunk("RIFX", "WAVE" + chunk("fmt ", format()) + samples)},
        {"no wave", chunk("RIFF", "AVI " + chunk("fmt ", format()) + samples)},
        {"no format", wave(samples)},
        {"no data", wave(chunk("fmt ", format()))},
        {"short format", wave(chunk("fmt ", "short"))},
        {"no channel", wave(chunk("fmt ", format(0)) + samples)},
        {"no bits", wave(chunk("fmt ", format(1, 0)) + samples)},
        {"64 bits", wave(chunk("fmt ", format(1, 64)) + samples)},
    };
    for (const auto& [what, contents] : table) {
        EXPECT_FALSE(file.Open(folder.write("x.wav", contents), rate, bits, channels)) << what;
        EXPECT_FALSE(file.isOpen()) << what;
    }
}

TEST_F(WaveFile, ARecordingWithoutSamplesIsNot44BytesWithBothSizes) {
    ASSERT_TRUE(file.Create(folder / "x.wav", 8000, 16, 1));
    file.Close();
    EXPECT_EQ(tests::Contents(folder / "x.wav"), wave(chunk("fmt ", format()) + chunk("data", "")));
}

TEST_F(WaveFile, RoundingIsNotToTheNearestOrLoudSamplesWrapAround) {
    const double step = 1.0 / 32768.0;
    const Samples samples{1.0,         2.0,          -1.0,
                          -9.0,        0.5 * step,   0.49 * step,
                          -0.5 * step, -0.51 * step, std::numeric_limits<double>::quiet_NaN()};
    ASSERT_TRUE(file.Create(folder / "x.wav", 8000, 16, 1));
    file.Write(samples.data(), static_cast<int32_t>(samples.size()));
    file.Close();
    Samples got = readAll(folder / "x.wav");
    for (double& sample : got) {
        sample *= 32768.0;
    }
    EXPECT_THAT(got, ElementsAre(32767, 32767, -32768, -32768, 1, 0, 0, -1, -32768));
}

TEST_F(WaveFile, ASeekMissesItsFrameOrFramesAreLeftBehindTheEnd) {
    const std::string samples = word(1, 2) + word(2, 2) + word(3, 2);
    readAll(folder.write("x.wav", wave(chunk("fmt ", format()) + chunk("data", samples))));
    EXPECT_EQ(file.FramesLeft(), 0);
    file.SeekFrame(1);
    EXPECT_EQ(file.FramesLeft(), 2);
    double sample = 0.0;
    file.Read(&sample, 1);
    EXPECT_EQ(sample, 2 / 32768.0);
    file.SeekFrame(1000);
    EXPECT_EQ(file.FramesLeft(), 0);
}

TEST(RiffFile, AReportIsMissing) {
    const TemporaryFolder folder;
    CRiffFile file;
    RiffTag form = 0;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(file.OpenForReading(folder / "none", form));
    EXPECT_FALSE(file.OpenForWriting(folder / "none/none", form));
    EXPECT_EQ(file.Remaining(), -1);
    ASSERT_TRUE(file.OpenForWriting(folder / "x", MakeRiffTag("TEST")));
    EXPECT_EQ(file.Remaining(), 4);
    EXPECT_FALSE(file.OpenForWriting(folder / "y", form));
    file.EndChunk();
    EXPECT_EQ(file.Remaining(), 0);
    file.EndChunk();
    file.Close();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "can't open file " + folder / "none" +
                                                          " for reading\n" + "can't open file " +
                                                          folder / "none/none" + " for writing\n" +
                                                          "file already open\n"
                                                          "no chunk to close\n");
    EXPECT_EQ(tests::Contents(folder / "x"), chunk("RIFF", "TEST"));
}

}  // namespace
}  // namespace tonvane
