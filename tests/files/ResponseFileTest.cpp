// Impulse responses: speaker response files, raw samples, and samples of another number.
#include <bit>
#include <cmath>

#include <gmock/gmock.h>

#include "files/ImpulseResponse.h"
#include "files/ResponseFile.h"
#include "files/TestFiles.h"
#include "support/WaveBytes.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string responseBytes(int32_t rate, const std::vector<double>& samples) {
    std::string bytes = tests::LittleEndian(static_cast<uint32_t>(rate), 4);
    for (const double sample : samples) {
        bytes += tests::LittleEndian(std::bit_cast<uint64_t>(sample), 8);
    }
    return bytes;
}

TEST(ResponseFile, HasItsBytesBitForBitAndLeavesWhatAShortOneLacks) {
    const tests::TemporaryFolder folder;
    std::vector<double> samples(responseFileSamples);
    for (size_t i = 0; i < samples.size(); ++i) {
        samples[i] = std::bit_cast<double>(i * 0x9E3779B97F4A7C15U);  // NaN and denormals as well
    }
    const std::string whole = responseBytes(-44100, samples);
    ASSERT_TRUE(WriteResponseFile(folder / "r", -44100, samples));
    EXPECT_TRUE(tests::Contents(folder / "r") == whole);
    EXPECT_FALSE(WriteResponseFile(folder / "none/r", 48000, samples));
    int32_t rate = 7;
    std::vector<double> read(responseFileSamples, 9.0);
    EXPECT_FALSE(ReadResponseFile(folder / "none", rate, read));
    EXPECT_FALSE(ReadResponseFile(folder.path(), rate, read));
    for (const size_t length : {size_t{3}, size_t{4}, size_t{11}, size_t{12}, whole.size()}) {
        EXPECT_EQ(ReadResponseFile(folder.write("r", whole.substr(0, length)), rate, read), length);
        EXPECT_EQ(rate, length < 4 ? 7 : -44100) << length;
        EXPECT_EQ(read[0], length < 12 ? 9.0 : samples[0]) << length;
    }
    EXPECT_TRUE(responseBytes(rate, read) == whole);
}

TEST(ResponseFile, CheckedReaderSaysWhatIsWrong) {
    const auto with = [](size_t i, double value) {
        std::vector<double> samples(responseFileSamples);
        samples[32] = 1.0;
        samples[i] = value;
        return samples;
    };
    const std::vector<double> good = with(32, -0.5);
    const std::string bytes = responseBytes(48000, good);
    tests::ExpectRefusals(
        {
            {bytes.substr(0, 4), ": expected a speaker response of 262148 bytes, found 4"},
            {bytes.substr(1), ": expected a speaker response of 262148 bytes, found 262147"},
            {bytes + "x", ": expected a speaker response of 262148 bytes, found more"},
            {responseBytes(7999, good),
             ": the file's sample rate is 7999 Hz, expected 8000 to 192000 Hz"},
            {responseBytes(192001, good), ": the file's sample rate is 192001 Hz"},
            {responseBytes(-48000, good), ": the file's sample rate is -48000 Hz"},
            {responseBytes(48000, with(0, std::nan(""))), ": sample 0 "},
            {responseBytes(48000, with(32767, -HUGE_VAL)), ": sample 32767 "},
            {responseBytes(48000, with(5, -3.5e38)), ": sample 5 "},
            {responseBytes(48000, with(32, 1e-38)), ": the response is silence"},
        },
        ReadCheckedResponseFile);
    const tests::TemporaryFolder folder;
    for (const int32_t rate : {8000, 192000}) {
        const auto response =
            ReadCheckedResponseFile(folder.write("good.qsr", responseBytes(rate, good)));
        EXPECT_EQ(response.rate, rate);
        EXPECT_EQ(response.samples, good);
    }
}

TEST(RawSamples, AreLittleEndianFloat32) {
    const std::string bytes("\x00\x00\x80\x3F\x00\x00\x00\xC0", 8);  // 1, -2
    EXPECT_THAT(ParseRawSamples("r", bytes), ElementsAre(1.0, -2.0));
    EXPECT_EQ(FormatRawSamples(std::vector{1.0, -2.0}), bytes);
    for (const auto& bad : {std::string(), bytes.substr(1)}) {
        EXPECT_EQ(tests::ComplaintOf([&] { ParseRawSamples("r", bad); }),
                  "r: expected float32 samples, four bytes each, up to 64 MB; found " +
                      std::to_string(bad.size()) + " bytes");
    }
}

// A pulse that falls by 60 dB in 3000 samples, in a floor of the given level.
std::vector<double> decay(size_t count, size_t onset, double floorLevel) {
    std::vector<double> samples(count);
    for (size_t i = 0; i < count; ++i) {
        samples[i] = i % 2 == 0 ? floorLevel : -floorLevel;
        if (i >= onset) {
            samples[i] += std::pow(10.0, -static_cast<double>(i - onset) / 1000.0);
        }
    }
    return samples;
}

TEST(ImpulseOfAnotherLength, IsFilledUpOrCutWhereNothingIsLost) {
    InputNotes notes;
    const auto filled = FitImpulse("w", {0.5, -0.25}, notes);
    ASSERT_EQ(filled.size(), 32768U);
    EXPECT_THAT(std::span(filled).first(4), ElementsAre(0.5, -0.25, 0, 0));
    EXPECT_THAT(notes.texts(), ElementsAre(HasSubstr("2 samples, filled up with zeros")));

    const struct {
        size_t count, onset, first;
        double floorLevel;
    } cases[] = {
        {65536, 100, 0, 0.0},
        {65536, 20000, 0, 1e-5},
        {131072, 48000, 48000 - 1024, 1e-5},
        {33000, 32000, 33000 - 32768, 0.0},
    };
    for (const auto& c : cases) {
        const auto samples = decay(c.count, c.onset, c.floorLevel);
        InputNotes told;
        const auto cut = FitImpulse("w", samples, told);
        EXPECT_TRUE(std::ranges::equal(cut, std::span(samples).subspan(c.first, 32768))) << c.onset;
        EXPECT_THAT(told.texts(), ElementsAre(HasSubstr("from sample " + std::to_string(c.first))));
        InputNotes strict(true);
        EXPECT_NE(tests::ComplaintOf([&] { FitImpulse("w", samples, strict); }), "");
    }
}

// Of the pulse's energy of 217.6 (1/(1 - 10^-0.002)) the floor of 0.01 holds 1e-4 * 98304 outside:
// 10 lg(9.83 / (217.6 + 13.1)) = -13.7 dB.
TEST(ImpulseOfAnotherLength, IsRefusedWhereTooMuchWouldBeLost) {
    auto faulty = decay(40000, 0, 0.0);
    faulty[7] = std::nan("");
    const std::pair<std::vector<double>, std::string> cases[] = {
        {decay(131072, 100, 0.01),
         "w: the file has 131072 samples, 32768 are used; the others hold -13.7 dB of its energy"},
        {std::vector<double>(40000), "w: the response is silence"},
        {faulty, "w: sample 7 "},
    };
    for (const auto& c : cases) {
        InputNotes notes;
        EXPECT_THAT(tests::ComplaintOf([&] { FitImpulse("w", c.first, notes); }),
                    testing::StartsWith(c.second));
    }
}

}  // namespace
}  // namespace tonvane
