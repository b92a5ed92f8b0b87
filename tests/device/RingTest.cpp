// The two queues between a worker and a device thread.
#include <numeric>
#include <random>
#include <thread>

#include <gmock/gmock.h>

#include "device/SampleRing.h"
#include "device/UnitRing.h"
#include "support/CallWatch.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using Words = std::vector<int32_t>;  // a word is a frame of two 16-bit samples, or one sample

constexpr int32_t depth = 32768;
constexpr int32_t unit = UnitRing::unitFrames;
constexpr int32_t wordBytes = 4;

Words counting(int32_t count, int32_t first = 1) {
    Words words(static_cast<size_t>(count));
    std::iota(words.begin(), words.end(), first);
    return words;
}

// Calls move(first, count) for blocks of any size up to 3000, one behind the other.
template <typename Move>
void inBlocks(int32_t total, uint32_t seed, Move move) {
    std::mt19937 random(seed);
    for (int32_t first = 0; first < total;) {
        const int32_t count = std::min(static_cast<int32_t>(random() % 3000), total - first);
        EXPECT_EQ(move(first, count), count);
        first += count;
    }
}

class UnitRings : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(play.Open(UnitRing::Direction::play, wordBytes, 48000, depth));
        ASSERT_TRUE(capture.Open(UnitRing::Direction::capture, wordBytes, 48000, depth));
    }
    UnitRing play;
    UnitRing capture;
};

TEST_F(UnitRings, CarryEveryFrameInItsPlaceBetweenThreads) {
    const Words sent = counting(200000);
    std::thread writer([&] {
        inBlocks(200000, 1,
                 [&](int32_t first, int32_t count) { return play.Write(&sent[first], count); });
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
            std::ranges::copy(from, to.begin());
            capture.Complete();
            play.Complete();
        }
    });
    Words got(sent.size());
    inBlocks(200000, 2,
             [&](int32_t first, int32_t count) { return capture.Read(&got[first], count); });
    writer.join();
    play.WaitEmpty();
    capture.Close();
    device.join();
    EXPECT_EQ(got, sent);
    EXPECT_EQ(play.submitted(), 200000U / unit + 1) << "the flush fills up one unit";
}

TEST_F(UnitRings, AFlushFillsAUnitUpWithZerosAndSubmitsNoEmptyOne) {
    play.FlushOutput();
    play.WaitFilled();  // no longer
    EXPECT_EQ(play.submitted(), 0U);
    const Words full = counting(depth);
    play.Write(full.data(), depth);
    for (int32_t i = 0; i < depth / unit; ++i) {
        play.Complete();
    }
    play.Write(full.data(), 3);  // into the unit that held frames before
    EXPECT_TRUE(play.DeviceUnit().empty());
    play.FlushOutput();
    play.FlushOutput();
    Words got(unit);
    std::memcpy(got.data(), play.DeviceUnit().data(), play.DeviceUnit().size());
    Words expected{1, 2, 3};
    expected.resize(unit);
    EXPECT_EQ(got, expected);
    EXPECT_EQ(play.submitted(), 33U);
}

TEST_F(UnitRings, CloseFreesTheWorkersWhichTellWhatTheyHaveMoved) {
    Words frames(depth + 5000);
    Words got(5000);
    capture.Complete();
    std::thread writer([&] { EXPECT_EQ(play.Write(frames.data(), depth + 5000), depth); });
    std::thread reader([&] { EXPECT_EQ(capture.Read(got.data(), 5000), unit); });
    play.WaitFilled();
    while (capture.submitted() != 1) {
        std::this_thread::yield();
    }
    play.Close();
    capture.Close();
    writer.join();
    reader.join();
    EXPECT_EQ(play.Write(frames.data(), 1) + capture.Read(got.data(), 1), 0);
    play.WaitEmpty();  // returns although units are left
    SetUp();
    EXPECT_TRUE(play.DeviceUnit().empty()) << "a new run starts on an empty queue";
}

TEST_F(UnitRings, CompleteAUnitByNothingButAWake) {
    play.Write(counting(depth).data(), depth);
    tests::ExpectQuiet([&] { play.Complete(); });
}

TEST(SampleRing, CarriesEverySampleInItsPlaceBetweenThreads) {
    SampleRing ring;
    ring.Open(2, 4096, 1);
    std::thread worker([&] {
        inBlocks(300000, 3, [&](int32_t first, int32_t count) {
            Words block = counting(count, first);
            const Words right = counting(count, first - 300000);
            block.insert(block.end(), right.begin(), right.end());
            return ring.Write(block.data(), count);
        });
        ring.FlushOutput();
    });
    std::array<Words, 2> got;
    while (!ring.isFlushed() || ring.Held() > 0) {
        ring.Take(333, [&](int32_t channel, const int32_t* from, int32_t, int32_t count) {
            got[channel].insert(got[channel].end(), from, from + count);
        });
    }
    worker.join();
    EXPECT_EQ(got[0], counting(300000, 0));
    EXPECT_EQ(got[1], counting(300000, -300000));
}

TEST(SampleRing, HoldsItsFramesAndNoMoreAndCloseFreesAWorker) {
    SampleRing ring;
    ring.Open(1, 8, 1);
    const auto put = [&](int32_t frames) {
        return ring.Put(frames, [](int32_t, int32_t* to, int32_t first, int32_t count) {
            std::iota(to, to + count, first);
        });
    };
    EXPECT_EQ(put(5), 5);
    EXPECT_EQ(put(5), 3) << "the frames behind the room are lost";
    Words got(9, -1);
    std::thread worker([&] { EXPECT_EQ(ring.Read(got.data(), 9), 8); });
    ring.WaitEmpty();
    ring.Close();
    worker.join();
    EXPECT_THAT(got, ElementsAre(0, 1, 2, 3, 4, 0, 1, 2, -1));
    EXPECT_EQ(ring.Write(got.data(), 1), 0);
}

}  // namespace
}  // namespace tonvane
