// The words that go to the amplifier.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/BiquadWords.h"
#include "amplifier/FixedPoint.h"

namespace tonvane {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double step = 1.0 / (1 << 23);

std::vector<int32_t> wordsOf(int32_t (&convert)(double), std::vector<double> values) {
    std::vector<int32_t> words(values.size());
    std::ranges::transform(values, words.begin(), convert);
    return words;
}

TEST(Words, CoefficientsRoundToTheNearestStepAndWrap) {
    EXPECT_THAT(wordsOf(ToCoefWord, {0.0, 1.0, -1.0, -0.5, 4.0 - step, -4.0}),
                ElementsAre(0, 0x800000, 0x3800000, 0x3C00000, 0x1FFFFFF, 0x2000000));
    // Ties go away from zero.
    EXPECT_THAT(wordsOf(ToCoefWord, {0.5 * step, -0.5 * step, 1.5 * step, 99.49 * step}),
                ElementsAre(1, 0x3FFFFFF, 2, 99));
    // Beyond the range the high bits are lost, however far.
    EXPECT_THAT(wordsOf(ToCoefWord, {4.0, 5.5, -5.5, 1e9 + 0.5, -1e9 - 0.5, 0x1p45 + 1.0, 1e300}),
                ElementsAre(0x2000000, 0x2C00000, 0x1400000, 0x400000, 0x3C00000, 0x800000, 0));
    EXPECT_THAT(wordsOf(ToCoefWord, {-1e300, infinity, -infinity, nan}), Each(0));
}

TEST(Words, ThresholdsHaveTwentySevenFractionBits) {
    EXPECT_THAT(wordsOf(ToThresholdWord, {1.0, 4.0 - 0x1p-27, 0x1p-28, 4.0, 5.0, -1.0, 1e300, nan}),
                ElementsAre(0x8000000, 0x1FFFFFFF, 1, 0, 0x8000000, 0x18000000, 0, 0));
}

TEST(Words, DecodingIsTheReturnOfEncoding) {
    for (int32_t word = 0; word <= coefficientMask; word += 4093) {
        ASSERT_EQ(ToCoefWord(FromCoefWord(word)), word);
    }
    EXPECT_EQ(FromCoefWord(0x2000000), -4.0);
    EXPECT_EQ(FromCoefWord(0x1FFFFFF), 4.0 - step);
    EXPECT_EQ(FromCoefWord(-1), -step);  // bits above the 26 are not looked at
    for (const double value : {0.0, -4.0, -4.0 - 0.25 * step, 4.0 - step, 4.0 - 0.75 * step}) {
        EXPECT_TRUE(FitsCoefWord(value)) << value;
    }
    for (const double value :
         {4.0, 4.0 - 0.5 * step, -4.0 - 0.5 * step, 1e300, infinity, -infinity, nan}) {
        EXPECT_FALSE(FitsCoefWord(value)) << value;
    }
}

TEST(Words, SectionsHaveTheFeedbackNegatedAndComeBackFromTheirWords) {
    const Biquad sections[] = {{2.0, -0.5, 0.25, -1.5, 0.75}, {1.0, nan, -2.0, 0.5, 0.0}, {}};
    std::vector<int32_t> words = EncodeBiquads(sections);
    EXPECT_THAT(words, ElementsAre(0x1000000, 0x3C00000, 0x200000, 0xC00000, 0x3A00000,  //
                                   0x800000, 0, 0x3000000, 0x3C00000, 0,                 //
                                   0x800000, 0, 0, 0, 0));
    words.push_back(7);  // of no whole section
    const std::vector<Biquad> decoded = DecodeBiquads(words);
    ASSERT_EQ(decoded.size(), 3U);
    EXPECT_EQ(EncodeBiquads(std::span(decoded).first(1)), EncodeBiquads(std::span(sections, 1)));
    EXPECT_FALSE(std::signbit(decoded[2].a1));
}

}  // namespace
}  // namespace tonvane
