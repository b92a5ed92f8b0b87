#include <bit>
#include <cmath>

#include <gmock/gmock.h>

#include "files/ResponseFile.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using tests::ResponseBytes;

TEST(ResponseFile, ReadsBackBitForBitWhatWasWritten) {
    const tests::TemporaryFolder folder;
    std::vector<double> samples(responseFileSamples);
    for (size_t i = 0; i < samples.size(); ++i) {
        samples[i] = std::bit_cast<double>(i * 0x9E3779B97F4A7C15U);  // NaN and denormals as well
    }
    ASSERT_TRUE(WriteResponseFile(folder / "r.qsr", -44100, samples));
    EXPECT_TRUE(tests::Contents(folder / "r.qsr") == ResponseBytes(-44100, samples));
    int32_t rate = 0;
    std::vector<double> read(responseFileSamples);
    ASSERT_TRUE(ReadResponseFile(folder / "r.qsr", rate, read));
    EXPECT_TRUE(ResponseBytes(rate, read) == ResponseBytes(-44100, samples));
    EXPECT_FALSE(WriteResponseFile(folder / "none/r.qsr", 48000, samples));
}

TEST(ResponseFile, ThatIsShortOrMissingLeavesTheRestAsItWas) {
    const tests::TemporaryFolder folder;
    const std::string whole = ResponseBytes(48000, {0.25, 0.5});
    const struct {
        std::string path;
        bool opened;
        int32_t rate;
        double first, second;
    } cases[] = {
        {folder / "none", false, 7, 9, 9},
        {folder.path(), false, 7, 9, 9},
        {folder.write("3", whole.substr(0, 3)), true, 7, 9, 9},
        {folder.write("4", whole.substr(0, 4)), true, 48000, 9, 9},
        {folder.write("19", whole.substr(0, 19)), true, 48000, 0.25, 9},
        {folder.write("20", whole), true, 48000, 0.25, 0.5},
    };
    for (const auto& c : cases) {
        int32_t rate = 7;
        std::vector<double> samples(responseFileSamples, 9.0);
        EXPECT_EQ(ReadResponseFile(c.path, rate, samples), c.opened) << c.path;
        EXPECT_EQ(rate, c.rate) << c.path;
        EXPECT_EQ(samples[0], c.first) << c.path;
        EXPECT_EQ(samples[1], c.second) << c.path;
    }
}

TEST(ResponseFile, CheckedReaderSaysWhatIsWrong) {
    const tests::TemporaryFolder folder;
    std::vector<double> good(responseFileSamples);
    good[32] = 1.0;
    const auto with = [&](size_t i, double value) {
        auto samples = good;
        samples[i] = value;
        return samples;
    };
    const struct {
        std::string bytes;
        const char* complaint;
    } cases[] = {
        {ResponseBytes(48000, good).substr(0, 4), "262148 bytes, found 4"},
        {ResponseBytes(48000, good).substr(1), "262148 bytes, found 262147"},
        {ResponseBytes(48000, good) + "x", "262148 bytes, found more"},
        {ResponseBytes(7999, good), "7999 Hz, expected 8000 to 192000 Hz"},
        {ResponseBytes(192001, good), "192001 Hz"},
        {ResponseBytes(-48000, good), "-48000 Hz"},
        {ResponseBytes(48000, with(0, std::nan(""))), "sample 0"},
        {ResponseBytes(48000, with(32767, -HUGE_VAL)), "sample 32767"},
        {ResponseBytes(48000, with(32, 0.0)), "silence"},
    };
    for (const auto& c : cases) {
        const std::string path = folder.write("bad.qsr", c.bytes);
        EXPECT_THAT(tests::ComplaintOf([&] { ReadCheckedResponseFile(path); }),
                    AllOf(HasSubstr(path), HasSubstr(c.complaint)));
    }
    for (const int32_t rate : {8000, 192000}) {
        const auto response =
            ReadCheckedResponseFile(folder.write("good.qsr", ResponseBytes(rate, good)));
        EXPECT_EQ(response.rate, rate);
        EXPECT_EQ(response.samples, good);
    }
}

}  // namespace
}  // namespace tonvane
