// What runs on a device's callback thread takes no lock and no memory and calls the system for
// nothing but waking a worker.
#include <array>
#include <mutex>
#include <vector>

#include <gmock/gmock.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "device/UnitRing.h"
#include "device/jack/FloatSwitch.h"
#include "support/CallWatch.h"

namespace tonvane {
namespace {

constexpr int32_t depth = 32768;
constexpr int32_t frames = 1024;

TEST(CallbackThread, TheWatchIsBlind) {
    std::mutex mutex;
    const auto seen = tests::Watch([&] {
        const std::lock_guard lock(mutex);
        ::operator delete(::operator new(1));
        syscall(SYS_gettid);
    });
    if (!seen) {
        GTEST_SKIP() << "this kernel or this build does not show system calls";
    }
    EXPECT_EQ(seen->systemCall, SYS_gettid);
    EXPECT_EQ(seen->locks, 1);
    EXPECT_EQ(seen->allocations, 1);
}

// Skips the test, with the callback not run, where nothing can be seen.
void expectQuiet(const std::function<void()>& callback) {
    const auto seen = tests::Watch(callback);
    if (!seen) {
        GTEST_SKIP() << "this kernel or this build does not show system calls";
    }
    EXPECT_EQ(seen->systemCall, -1);
    EXPECT_EQ(seen->locks, 0);
    EXPECT_EQ(seen->allocations, 0);
}

TEST(CallbackThread, ASwitchOfFloatsDisturbsTheSystem) {
    FloatSwitch device;
    device.capture.Open(2, depth, 1);
    device.play.Open(2, depth, 1);
    const std::vector<int32_t> queued(2 * 10000, 5);
    device.play.Write(queued.data(), 10000);
    const std::vector<float> input(frames, 0.5F);
    std::vector<float> output(frames);
    const std::array<const float*, 2> captured{input.data(), nullptr};
    const std::array<float*, 2> played{output.data(), output.data()};
    expectQuiet([&] {
        for (int i = 0; i < 40; ++i) {  // until one ring is empty and the other full
            device.Exchange(captured, played, frames);
        }
    });
    if (IsSkipped()) {
        return;
    }
    EXPECT_EQ(device.capture.Held(), depth);
    EXPECT_EQ(device.play.Held(), 0);
}

TEST(CallbackThread, ACompletedUnitDoesMoreThanWakeAWorker) {
    UnitRing ring(UnitRing::Direction::play);
    ASSERT_TRUE(ring.Open(4, 48000, depth));
    const std::vector<int32_t> queued(depth);
    ring.Write(queued.data(), depth);
    expectQuiet([&] {
        for (int i = 0; i < 32; ++i) {
            ASSERT_FALSE(ring.DeviceUnit().empty());
            ring.Complete();
        }
    });
}

}  // namespace
}  // namespace tonvane
