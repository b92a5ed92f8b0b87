// Between a device of float samples and the rings of integers.
#include <array>
#include <cmath>
#include <vector>

#include <gmock/gmock.h>

#include "device/jack/FloatSwitch.h"

namespace tonvane {
namespace {

using testing::Each;

constexpr int32_t frames = 64;

TEST(FloatSwitch, ACapturedSampleWrapsAroundOrIsNotTruncated) {
    const std::array<std::pair<float, int32_t>, 9> table{{
        {0.0F, 0},
        {0.5F, 1 << 30},
        {-0.5F, -(1 << 30)},
        {0x1.8p-31F, 1},
        {-0x1.8p-31F, -1},
        {1.0F, INT32_MAX},
        {-1.0F, INT32_MIN},
        {3.0F, INT32_MAX},
        {-INFINITY, INT32_MIN},
    }};
    for (const auto& [sample, expected] : table) {
        EXPECT_EQ(SampleOfFloat(sample), expected) << sample;
    }
}

class FloatSwitches : public testing::Test {
  protected:
    FloatSwitches() {
        device.capture.Open(1, frames, 1);
        device.play.Open(1, frames, 1);
    }

    void exchange() {
        device.Exchange(std::array{input.data()}, std::array{output.data()}, frames);
    }

    FloatSwitch device;
    const std::vector<float> input = std::vector<float>(frames, 0.25F);
    std::vector<float> output = std::vector<float>(frames, 9.0F);
    std::vector<int32_t> words = std::vector<int32_t>(frames, -(1 << 29));
};

TEST_F(FloatSwitches, WhatIsMissingIsNotSilence) {
    device.play.Write(words.data(), 10);
    exchange();
    EXPECT_THAT(std::vector(output.begin(), output.begin() + 10), Each(-0.25F));
    EXPECT_THAT(std::vector(output.begin() + 10, output.end()), Each(0.0F));
    EXPECT_EQ(device.capture.Read(words.data(), frames), frames);
    EXPECT_THAT(words, Each(1 << 29));
}

TEST_F(FloatSwitches, AGapIsCountedThatNobodyHearsOrOneIsNot) {
    exchange();
    exchange();  // the play ring was empty, the capture ring is full
    EXPECT_EQ(device.playGaps.count() + device.captureGaps.count(), 0) << "until a worker is back";
    device.playGaps.Settle();
    device.captureGaps.Settle();
    EXPECT_EQ(device.playGaps.count(), 1);
    EXPECT_EQ(device.captureGaps.count(), 1);
    device.capture.Read(words.data(), frames);
    device.play.FlushOutput();
    exchange();  // nothing more was to come
    device.playGaps.Settle();
    device.captureGaps.Settle();
    EXPECT_EQ(device.playGaps.count(), 1);
    EXPECT_EQ(device.captureGaps.count(), 1);
}

}  // namespace
}  // namespace tonvane
