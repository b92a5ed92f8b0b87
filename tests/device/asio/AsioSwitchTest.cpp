// Between the buffers of an ASIO driver and the rings of integers.
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "device/asio/AsioSwitch.h"
#include "support/CallWatch.h"

namespace tonvane {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr int32_t depth = 8;

TEST(AsioSwitch, AFloatIsNotTruncatedOrFullScaleIsNotTheLowestInteger) {
    const std::array<std::pair<float, int32_t>, 9> table{{
        {0.5F, 1 << 30},
        {-0.5F, -(1 << 30)},
        {0x1.8p-31F, 1},
        {-0x1.8p-31F, -1},
        {0x1.fffffep-1F, INT32_MAX - 127},
        {1.0F, INT32_MIN},
        {-1.0F, INT32_MIN},
        {INFINITY, INT32_MIN},
        {std::numeric_limits<float>::quiet_NaN(), INT32_MIN},
    }};
    for (const auto& [sample, expected] : table) {
        EXPECT_EQ(AsioIntegerOf(sample), expected) << sample;
    }
}

// Two channels; the buffers of the driver as 32 bits of whatever type.
class AsioSwitches : public testing::Test {
  protected:
    AsioSwitches() {
        device.capture.Open(2, depth, 1);
        device.play.Open(2, depth, 1);
    }

    static int32_t bitsOf(float sample) { return std::bit_cast<int32_t>(sample); }
    std::array<void*, 2> buffers() { return {left.data(), right.data()}; }

    void queue(int32_t frames, int32_t leftSample, int32_t rightSample) {
        std::vector<int32_t> words(static_cast<size_t>(frames), leftSample);
        words.resize(static_cast<size_t>(2 * frames), rightSample);
        device.play.Write(words.data(), frames);
    }

    AsioSwitch device;
    std::vector<int32_t> left = std::vector<int32_t>(6, 7);
    std::vector<int32_t> right = std::vector<int32_t>(6, 8);
};

TEST_F(AsioSwitches, FloatsComeInOtherThanIntegersOrAChannelTooFew) {
    left.assign(6, bitsOf(0.25F));
    right.assign(6, bitsOf(-0.25F));
    device.Capture(buffers(), AsioSampleType::float32, 6);
    std::vector<int32_t> got(4);
    device.capture.Read(got.data(), 2);
    EXPECT_THAT(got, ElementsAre(1 << 29, 1 << 29, -(1 << 29), -(1 << 29)));

    queue(4, 1 << 29, -(1 << 29) - 1);
    device.Play(buffers(), AsioSampleType::float32, 6);
    const int32_t quarter = bitsOf(0.25F);
    EXPECT_THAT(left, ElementsAre(quarter, quarter, quarter, quarter, 0, 0));
    const int32_t negative = bitsOf(-0.25F);  // the nearest float
    EXPECT_THAT(right, ElementsAre(negative, negative, negative, negative, 0, 0));
}

TEST_F(AsioSwitches, IntegersChangeOrAnUnknownTypeIsTouched) {
    constexpr auto sixteenBits = static_cast<AsioSampleType>(0x10);
    queue(6, INT32_MIN, 3);
    device.Capture(buffers(), sixteenBits, 6);
    device.Play(buffers(), sixteenBits, 6);
    EXPECT_THAT(left, Each(7));
    EXPECT_EQ(device.capture.Held(), 0);
    EXPECT_EQ(device.play.Held(), 6);
    device.Play(buffers(), AsioSampleType::int32, 6);
    EXPECT_THAT(left, Each(INT32_MIN));
    EXPECT_THAT(right, Each(3));
}

TEST_F(AsioSwitches, FramesWithoutRoomOverwriteOthersOrAreNoGap) {
    device.Capture(buffers(), AsioSampleType::int32, 6);
    left.assign(6, 70);
    device.Capture(buffers(), AsioSampleType::int32, 6);
    device.captureGaps.Settle();
    EXPECT_EQ(device.captureGaps.count(), 1);
    std::vector<int32_t> got(2 * depth);
    device.capture.Read(got.data(), depth);
    EXPECT_THAT(got, ElementsAre(7, 7, 7, 7, 7, 7, 70, 70, 8, 8, 8, 8, 8, 8, 8, 8));

    device.Play(buffers(), AsioSampleType::int32, 6);
    queue(2, 1, 2);
    device.play.FlushOutput();
    device.Play(buffers(), AsioSampleType::int32, 6);  // nothing more was to come
    device.playGaps.Settle();
    EXPECT_EQ(device.playGaps.count(), 1);
}

TEST_F(AsioSwitches, ASwitchTakesALockOrMemoryOrCallsTheSystem) {
    queue(depth, 1, 2);
    const auto seen = tests::Watch([&] {
        for (const auto type : {AsioSampleType::int32, AsioSampleType::float32}) {
            for (int i = 0; i < 4; ++i) {  // until one ring is empty and the other full
                device.Capture(buffers(), type, 6);
                device.Play(buffers(), type, 6);
            }
        }
    });
    if (!seen) {
        GTEST_SKIP() << "this kernel or this build does not show system calls";
    }
    EXPECT_EQ(seen->systemCall, -1);
    EXPECT_EQ(seen->locks, 0);
    EXPECT_EQ(seen->allocations, 0);
}

}  // namespace
}  // namespace tonvane
