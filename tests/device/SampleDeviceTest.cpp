// Between a platform's buffers of integers or floats and the rings of integers.
#include <array>
#include <bit>
#include <cmath>

#include <gmock/gmock.h>

#include "device/SampleDevice.h"
#include "support/CallWatch.h"

namespace tonvane {
namespace {

using testing::Each;
using testing::ElementsAre;

// Its platform is the test.
struct LoopDevice : SampleDevice {
    LoopDevice(int32_t channels, int32_t frames) { openRings(channels, channels, frames, 4, 8000); }

    bool Open(const WAVEFORMATEX*, const WAVEFORMATEX*, int, void*) override { return true; }
    void Close() override {}
    bool Start() override { return true; }
    void Stop() override {}

    using SampleDevice::captureSamples;
    using SampleDevice::playSamples;
};

int32_t bitsOf(float sample) {
    return std::bit_cast<int32_t>(sample);
}

// One sample, on its way from a buffer into the ring and out of it.
int32_t captured(int32_t bits, SampleType type) {
    LoopDevice device(1, 8);
    device.captureSamples(std::array<void*, 1>{&bits}, type, 1);
    int32_t word = 0;
    device.Read(&word, 1);
    return word;
}

int32_t played(int32_t word, SampleType type) {
    LoopDevice device(1, 8);
    device.Write(&word, 1);
    int32_t bits = 0;
    device.playSamples(std::array<void*, 1>{&bits}, type, 1);
    return bits;
}

TEST(SampleDevice, TruncatesCapturedFloatsWithinTheRangeOfIntegers) {
    const struct {
        float sample;
        int32_t clipped, wrapped;
    } cases[] = {{0.5F, 1 << 30, 1 << 30},      {0x1.8p-31F, 1, 1},
                 {-0x1.8p-31F, -1, -1},         {0x1.fffffep-1F, INT32_MAX - 127, INT32_MAX - 127},
                 {-1.0F, INT32_MIN, INT32_MIN}, {1.0F, INT32_MAX, INT32_MIN},
                 {3.0F, INT32_MAX, INT32_MIN},  {-INFINITY, INT32_MIN, INT32_MIN},
                 {NAN, INT32_MIN, INT32_MIN}};
    for (const auto& [sample, clipped, wrapped] : cases) {
        EXPECT_EQ(captured(bitsOf(sample), SampleType::floats), clipped) << sample;
        EXPECT_EQ(captured(bitsOf(sample), SampleType::wrappingFloats), wrapped) << sample;
    }
}

TEST(SampleDevice, PlaysTheNearestFloatAndLeavesIntegersAsTheyAre) {
    const std::pair<int32_t, float> cases[] = {
        {1 << 30, 0.5F}, {-(1 << 29) - 1, -0.25F}, {INT32_MAX, 1.0F}, {INT32_MIN, -1.0F}};
    for (const auto& [word, sample] : cases) {
        EXPECT_EQ(played(word, SampleType::floats), bitsOf(sample)) << word;
        EXPECT_EQ(played(word, SampleType::wrappingFloats), bitsOf(sample)) << word;
        EXPECT_EQ(played(word, SampleType::integers), word);
        EXPECT_EQ(captured(word, SampleType::integers), word);
    }
}

constexpr int32_t word = 1 << 29;  // a quarter
const int32_t quarter = bitsOf(0.25F);
const int32_t negative = bitsOf(-0.25F);

TEST(SampleDevice, CaptureLosesWhatHasNoRoomAndHearsAMissingBufferAsSilence) {
    LoopDevice device(2, 8);
    std::vector<int32_t> left(6, quarter);
    std::vector<int32_t> right(6, negative);
    device.captureSamples({}, SampleType::floats, 6);
    device.captureSamples(std::array<void*, 2>{left.data(), right.data()}, SampleType::floats, 6);
    device.captureSamples(std::array<void*, 2>{nullptr, right.data()}, SampleType::floats, 6);
    EXPECT_EQ(device.xruns(), 0) << "until the worker is back";
    std::vector<int32_t> got(16, 7);
    EXPECT_EQ(device.Read(got.data(), 8), 8);
    std::vector<int32_t> expected{word, word, word, word, word, word, 0, 0};
    expected.resize(16, -word);
    EXPECT_EQ(got, expected);
    EXPECT_EQ(device.xruns(), 1);
}

TEST(SampleDevice, PlayingIsSilentWhereTheRingIsEmpty) {
    LoopDevice device(2, 8);
    std::vector<int32_t> left(6, 7);
    std::vector<int32_t> right(6, 7);
    const std::array<void*, 2> buffers{left.data(), right.data()};
    const std::array<int32_t, 8> words{word, word, word, word, -word, -word, -word, -word};
    device.playSamples(buffers, SampleType::floats, 6);
    EXPECT_THAT(left, Each(0));
    EXPECT_THAT(right, Each(0));
    EXPECT_EQ(device.Write(words.data(), 4), 4);
    EXPECT_EQ(device.xruns(), 1);
    device.FlushOutput();
    device.playSamples(buffers, SampleType::floats, 6);
    EXPECT_THAT(left, ElementsAre(quarter, quarter, quarter, quarter, 0, 0));
    EXPECT_THAT(right, ElementsAre(negative, negative, negative, negative, 0, 0));
    device.Write(words.data(), 1);
    EXPECT_EQ(device.xruns(), 1) << "nothing more was to come";
}

TEST(SampleDevice, MovesWithoutDisturbingTheSystem) {
    LoopDevice device(2, 8);
    std::vector<int32_t> samples(2 * 1024);
    device.Write(samples.data(), 5);
    const std::array<void*, 2> buffers{samples.data(), samples.data()};
    tests::ExpectQuiet([&] {  // until one ring is empty and the other full
        for (const auto type :
             {SampleType::integers, SampleType::floats, SampleType::wrappingFloats}) {
            device.captureSamples(buffers, type, 3);
            device.playSamples(buffers, type, 3);
        }
    });
}

}  // namespace
}  // namespace tonvane
