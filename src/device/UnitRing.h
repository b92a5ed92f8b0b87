// A queue of fixed units of 1024 frames between one worker and one device thread, for devices that
// take or give whole units.
//
// Two counters say everything: `submitted`, units that the worker has passed on, is written by the
// worker alone; `completed`, units that the device has finished, by the device alone. Each only
// grows and may wrap around; only their difference counts. The semaphore is nothing but a wake-up:
// whoever it wakes looks at the counters again.
//
//   play      Write fills units and submits them; the device plays and completes them.
//   capture   all units lie with the device from the start; it fills and completes them; Read
//             empties them and submits them again.
//
// Which thread: one worker calls Write and FlushOutput, or Read; one device thread calls
// DeviceUnit, UnitAt and Complete, which take no lock and no memory and do not wait; the owner
// calls the rest.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/Threads.h"

namespace tonvane {

class UnitRing {
  public:
    static constexpr int32_t unitFrames = 1024;

    enum class Direction { capture, play };

    // Called with the index of a unit on the thread that submits it (Open for all units of a
    // capture ring, the worker later), for platforms that want to be handed each unit.
    using Data = void;  // what a worker moves
    using OnSubmit = std::function<void(int32_t unit)>;

    UnitRing() = default;
    UnitRing(const UnitRing&) = delete;
    UnitRing& operator=(const UnitRing&) = delete;

    // For the platform that wants it, ahead of Open.
    void SetOnSubmit(OnSubmit onSubmit) { onSubmit_ = std::move(onSubmit); }

    // An empty queue of frames/1024 units (rounded down; without any, Read and Write wait until
    // Close) for frames of `blockAlign` bytes at `sampleRate` Hz. No thread may be inside. False
    // when the ring is open already or a number is below 1.
    bool Open(Direction direction, int32_t blockAlign, int32_t sampleRate, int32_t frames);

    // Wakes a waiting worker, whose call then returns what it has moved, and makes every later call
    // return at once. The units stay until the next Open, so workers and device may still be
    // inside.
    void Close();

    [[nodiscard]] bool isOpen() const { return open_.load(); }

    // Waits until all frames are queued, or taken from the queue. Returns the frames that were
    // moved: fewer only when the ring is closed.
    int32_t Write(const void* data, int32_t frames);
    int32_t Read(void* data, int32_t frames);

    // Fills up a partly filled unit with zeros and submits it. It also says that no more is coming
    // for now: WaitFilled no longer waits, and a queue that runs empty is no fault, until the next
    // Write.
    void FlushOutput();

    // Play: waits, looking every sleepMs(), until all units are submitted, or less by FlushOutput.
    void WaitFilled() const;

    // Play: waits, looking every sleepMs(), until all that was submitted has been played.
    void WaitEmpty() const;

    // A quarter of the time of a unit, at least 10 ms.
    [[nodiscard]] int32_t sleepMs() const { return sleepMs_; }

    // Whether the worker has said that no more is coming.
    [[nodiscard]] bool isFlushed() const { return flushed_.load(); }

    // The next unit to play or to fill, counted from the oldest that is not completed; empty when
    // the worker has not submitted so many. The bytes are the device's until it completes them.
    [[nodiscard]] std::span<std::byte> DeviceUnit(int32_t ahead = 0);

    // The bytes of a unit by index.
    [[nodiscard]] std::span<std::byte> UnitAt(int32_t unit);

    // Says that the device has finished its oldest unit.
    void Complete();

    [[nodiscard]] uint32_t submitted() const { return submitted_.load(); }
    [[nodiscard]] int32_t unitCount() const { return unitCount_; }

  private:
    // Units that lie with the device.
    [[nodiscard]] int32_t withDevice() const;
    [[nodiscard]] bool workerHasUnit() const;
    bool waitForUnit();
    void submit();

    Direction direction_ = Direction::play;
    OnSubmit onSubmit_;
    std::vector<std::byte> memory_;
    int32_t unitCount_ = 0;
    int32_t unitBytes_ = 0;
    int32_t blockAlign_ = 1;
    int32_t sleepMs_ = 10;
    int32_t fill_ = 0;  // the worker's: bytes moved in its current unit
    std::atomic<bool> open_{false};
    std::atomic<bool> flushed_{false};
    std::atomic<uint32_t> submitted_{0};
    std::atomic<uint32_t> completed_{0};
    std::atomic<int32_t> tokens_{0};  // of the semaphore, never more than unitCount_
    std::optional<WakeUp> wakeUp_;
};

}  // namespace tonvane
