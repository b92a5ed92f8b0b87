#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "files/ImpulseResponse.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A pulse that falls by 60 dB in 3000 samples, in a floor of the given level.
std::vector<double> decay(size_t count, size_t onset, double floorLevel) {
    std::vector<double> samples(count);
    for (size_t i = 0; i < count; ++i) {
        const double sign = i % 2 == 0 ? 1.0 : -1.0;
        samples[i] = sign * floorLevel;
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
    EXPECT_THAT(std::vector(filled.begin(), filled.begin() + 4), ElementsAre(0.5, -0.25, 0, 0));
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
        const auto begin = samples.begin() + static_cast<ptrdiff_t>(c.first);
        EXPECT_TRUE(cut == std::vector<double>(begin, begin + 32768)) << c.onset;
        EXPECT_THAT(told.texts(), ElementsAre(HasSubstr("from sample " + std::to_string(c.first))));
        InputNotes strict(true);
        EXPECT_NE(tests::ComplaintOf([&] { FitImpulse("w", samples, strict); }), "");
    }
}

// Of the pulse's energy of 217.6 (1/(1 - 10^-0.002)) the floor of 0.01 holds 1e-4 * 98304 outside:
// 10 lg(9.83 / (217.6 + 13.1)) = -13.7 dB.
TEST(ImpulseOfAnotherLength, IsRefusedWhereTooMuchWouldBeLost) {
    InputNotes notes;
    EXPECT_THAT(tests::ComplaintOf([&] { FitImpulse("w", decay(131072, 100, 0.01), notes); }),
                testing::AllOf(testing::StartsWith("w: the file has 131072 samples"),
                               HasSubstr("-13.7 dB of its energy")));
    EXPECT_THAT(tests::ComplaintOf([&] { FitImpulse("w", std::vector<double>(40000), notes); }),
                HasSubstr("silence"));
    EXPECT_THAT(tests::ComplaintOf([&] {
                    auto samples = decay(40000, 0, 0.0);
                    samples[7] = std::numeric_limits<double>::quiet_NaN();
                    FitImpulse("w", samples, notes);
                }),
                HasSubstr("sample 7 "));
}

TEST(RawSamples, AreLittleEndianFloat32) {
    const tests::TemporaryFolder folder;
    const std::string bytes("\x00\x00\x80\x3F\x00\x00\x00\xC0", 8);  // 1, -2
    EXPECT_THAT(ReadRawSamples(folder.write("r.f32", bytes)), ElementsAre(1.0, -2.0));
    EXPECT_EQ(FormatRawSamples(std::vector{1.0, -2.0}), bytes);
    for (const char* name : {"none", "empty", "odd"}) {
        folder.write("empty", "");
        folder.write("odd", bytes.substr(1));
        EXPECT_THAT(tests::ComplaintOf([&] { ReadRawSamples(folder / name); }),
                    testing::StartsWith(folder / name));
    }
}

}  // namespace
}  // namespace tonvane
