// The two queues between a worker and a device thread.
#include <numeric>
#include <random>
#include <thread>

#include <gmock/gmock.h>

#include "device/SampleRing.h"
#include "device/UnitRing.h"

namespace tonvane {
namespace {

constexpr int32_t depth = 32768;
constexpr int32_t unit = UnitRing::unitFrames;
constexpr int32_t stereo16 = 4;  // bytes of a frame

using Frames = std::vector<uint32_t>;  // one word is a stereo frame of 16 bits

Frames counting(size_t count) {
    Frames frames(count);
    std::iota(frames.begin(), frames.end(), 1U);
    return frames;
}

std::span<uint32_t> wordsOf(std::span<std::byte> bytes) {
    return {reinterpret_cast<uint32_t*>(bytes.data()), bytes.size() / sizeof(uint32_t)};
}

class UnitRings : public testing::Test {
  protected:
    UnitRing play{UnitRing::Direction::play};
    UnitRing capture{UnitRing::Direction::capture};
};

TEST_F(UnitRings, FramesAreLostOrSwappedBetweenTwoThreads) {
    const Frames sent = counting(200000);
    ASSERT_TRUE(play.Open(stereo16, 48000, depth));
    ASSERT_TRUE(capture.Open(stereo16, 48000, depth));
    std::thread writer([&] {
        std::mt19937 random(1);
        for (size_t i = 0; i < sent.size();) {
            const size_t count = std::min<size_t>(random() % 3000, sent.size() - i);
            EXPECT_EQ(play.Write(&sent[i], static_cast<int32_t>(count)), count);
            i += count;
        }
        play.FlushOutput();
    });
    std::thread device([&] {  // a unit from one side to the other whenever both have one
        while (capture.isOpen()) {
            const auto from = play.DeviceUnit();
            const auto to = capture.DeviceUnit();
            if (from.empty() || to.empty()) {
                std::this_thread::yield();
                continue;
            }
            std::copy(from.begin(), from.end(), to.begin());
            capture.Complete();
            play.Complete();
        }
    });
    Frames got(sent.size());
    std::mt19937 random(2);
    for (size_t i = 0; i < got.size();) {
        const size_t count = std::min<size_t>(random() % 3000, got.size() - i);
        ASSERT_EQ(capture.Read(&got[i], static_cast<int32_t>(count)), count);
        i += count;
    }
    writer.join();
    play.WaitEmpty();
    capture.Close();
    device.join();
    EXPECT_EQ(got, sent);
    EXPECT_EQ(play.submitted(), (sent.size() + unit - 1) / unit) << "the flush fills up one unit";
}

TEST_F(UnitRings, FlushLeavesOldFramesBehindTheLastOrSubmitsEmptyUnits) {
    ASSERT_TRUE(play.Open(stereo16, 48000, depth));
    play.FlushOutput();
    EXPECT_EQ(play.submitted(), 0U);
    const Frames full = counting(static_cast<size_t>(depth));
    play.Write(full.data(), depth);
    for (int32_t i = 0; i < play.unitCount(); ++i) {
        play.Complete();
    }
    play.Write(full.data(), 3);  // into the unit that held frames before
    EXPECT_TRUE(play.DeviceUnit().empty());
    play.FlushOutput();
    Frames expected(unit);
    std::copy_n(full.begin(), 3, expected.begin());
    EXPECT_THAT(wordsOf(play.DeviceUnit()), testing::ElementsAreArray(expected));
    play.FlushOutput();
    EXPECT_EQ(play.submitted(), 33U);
}

TEST_F(UnitRings, CloseLeavesAWorkerWaitingOrReportsFramesThatWereNotMoved) {
    const Frames frames = counting(depth + 5000);
    Frames got(frames.size());
    ASSERT_TRUE(play.Open(stereo16, 48000, depth));
    ASSERT_TRUE(capture.Open(stereo16, 48000, depth));
    capture.Complete();
    int32_t written = -1;
    int32_t read = -1;
    std::thread writer([&] { written = play.Write(frames.data(), depth + 5000); });
    std::thread reader([&] { read = capture.Read(got.data(), 5000); });
    play.WaitFilled();
    while (capture.submitted() != 1) {
        std::this_thread::yield();
    }
    play.Close();
    capture.Close();
    writer.join();
    reader.join();
    EXPECT_EQ(written, depth);
    EXPECT_EQ(read, unit);
    EXPECT_EQ(play.Write(frames.data(), 1), 0);
    EXPECT_EQ(capture.Read(got.data(), 1), 0);
    play.WaitEmpty();  // returns although units are left
    ASSERT_TRUE(play.Open(stereo16, 48000, depth));
    EXPECT_TRUE(play.DeviceUnit().empty()) << "a new run starts on an empty queue";
}

TEST_F(UnitRings, PollingIsOffTheQuarterOfAUnit) {
    for (const auto& [rate, milliseconds] :
         {std::pair{48000, 10}, {8000, 32}, {11025, 23}, {192000, 10}}) {
        UnitRing ring(UnitRing::Direction::play);
        ASSERT_TRUE(ring.Open(stereo16, rate, depth));
        EXPECT_EQ(ring.sleepMs(), milliseconds) << rate;
        EXPECT_EQ(ring.unitCount(), 32);
    }
}

TEST_F(UnitRings, APlatformIsNotHandedEachUnitInItsTurn) {
    std::vector<int32_t> handed;
    UnitRing ring(UnitRing::Direction::capture, [&](int32_t index) { handed.push_back(index); });
    ASSERT_TRUE(ring.Open(stereo16, 48000, 3 * unit));
    EXPECT_THAT(handed, testing::ElementsAre(0, 1, 2)) << "all units at once";
    ring.Complete();
    Frames got(unit);
    ring.Read(got.data(), unit - 1);
    EXPECT_EQ(handed.size(), 3U);
    ring.Read(got.data(), 1);
    EXPECT_THAT(handed, testing::ElementsAre(0, 1, 2, 0));
}

TEST(SampleRing, FramesAreLostOrChannelsSwappedBetweenTwoThreads) {
    constexpr int32_t total = 300000;
    constexpr int32_t channels = 2;
    SampleRing ring;
    ring.Open(channels, 4096, 1);
    std::thread worker([&] {
        std::mt19937 random(3);
        for (int32_t first = 0; first < total;) {
            const int32_t count = std::min(static_cast<int32_t>(random() % 3000), total - first);
            std::vector<int32_t> block(static_cast<size_t>(channels * count));
            std::iota(block.begin(), block.begin() + count, first);
            std::iota(block.begin() + count, block.end(), -total + first);
            EXPECT_EQ(ring.Write(block.data(), count), count);
            first += count;
        }
        ring.FlushOutput();
    });
    std::vector<int32_t> left;
    std::vector<int32_t> right;
    while (!ring.isFlushed() || ring.Held() > 0) {
        ring.Take(333, [&](int32_t channel, const int32_t* from, int32_t, int32_t count) {
            auto& to = channel == 0 ? left : right;
            to.insert(to.end(), from, from + count);
        });
    }
    worker.join();
    std::vector<int32_t> expected(total);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(left, expected);
    std::iota(expected.begin(), expected.end(), -total);
    EXPECT_EQ(right, expected);
}

TEST(SampleRing, ItTakesMoreThanItHoldsOrCloseLeavesAWorkerWaiting) {
    SampleRing ring;
    ring.Open(1, 8, 1);
    const auto put = [&](int32_t frames) {
        return ring.Put(frames, [](int32_t, int32_t* to, int32_t first, int32_t count) {
            std::iota(to, to + count, first);
        });
    };
    EXPECT_EQ(put(5), 5);
    EXPECT_EQ(put(5), 3) << "the frames behind the room are lost";
    std::vector<int32_t> got(9, -1);
    std::thread worker([&] { EXPECT_EQ(ring.Read(got.data(), 9), 8); });
    ring.WaitEmpty();
    ring.Close();
    worker.join();
    EXPECT_THAT(got, testing::ElementsAre(0, 1, 2, 3, 4, 0, 1, 2, -1));
    EXPECT_EQ(ring.Write(got.data(), 1), 0);
}

}  // namespace
}  // namespace tonvane
