// A lock-free ring of 32-bit samples between one worker and one device thread, for devices that
// take or give any number of frames at a time: one run of samples for each channel.
//
// `writeCount` and `readCount` are the frames ever put in and ever taken out; each has one writer,
// only grows and may wrap around. The ring has no wake-up: the worker sleeps and looks again.
//
// Which thread: for playing, one worker calls Write and the device thread Take; for capturing, the
// device thread calls Put and one worker Read. The owner calls the rest. Put and Take take no lock
// and no memory and do not wait.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <vector>

namespace tonvane {

class SampleRing {
  public:
    using Data = int32_t;  // what a worker moves

    SampleRing() = default;
    SampleRing(const SampleRing&) = delete;
    SampleRing& operator=(const SampleRing&) = delete;

    // An empty ring; `frames` is a power of two. Without a channel or a frame the ring stays as it
    // is. `sleepMs` is the time between two looks of a waiting worker, at least 1. No thread may be
    // inside.
    void Open(int32_t channels, int32_t frames, int32_t sleepMs);

    // Ends the worker's waits: a waiting call returns what it has moved, and every later call
    // returns at once. The samples stay until the next Open.
    void Close() { open_ = false; }

    [[nodiscard]] bool isOpen() const { return open_.load(); }

    // Frames that the ring holds.
    [[nodiscard]] int32_t Held() const {
        return std::max(static_cast<int32_t>(writeCount_.load() - readCount_.load()), 0);
    }

    // Waits until all frames are in the ring, or taken out of it: `data` has `frames` samples of
    // channel 0, then those of channel 1 and so on. Returns the frames that were moved: fewer only
    // when the ring is closed.
    int32_t Write(const int32_t* data, int32_t frames);
    int32_t Read(int32_t* data, int32_t frames);

    // Says that no more is coming for now, until the next Write: WaitFilled no longer waits, and a
    // ring that runs empty is no fault.
    void FlushOutput() { flushed_ = true; }
    [[nodiscard]] bool isFlushed() const { return flushed_.load(); }

    // Waits until the ring is full, or FlushOutput has said that it will not be.
    void WaitFilled() const;

    // Waits until the ring is empty.
    void WaitEmpty() const;

    // Puts in as many of the frames as there is room for and returns their number. The ring asks
    // for each stretch by copyIn(channel, to, first, count): `count` samples of a channel from its
    // frame `first` on, to be stored at `to`.
    template <typename CopyIn>
    int32_t Put(int32_t frames, CopyIn copyIn);

    // Takes out as many of the frames as the ring holds and returns their number. It hands over
    // each stretch by copyOut(channel, from, first, count).
    template <typename CopyOut>
    int32_t Take(int32_t frames, CopyOut copyOut);

  private:
    [[nodiscard]] int32_t room() const { return frames_ - Held(); }
    int32_t* at(int32_t channel, uint32_t position) {
        return samples_.data() + static_cast<size_t>(channel) * static_cast<size_t>(frames_) +
               position;
    }
    // From a count to where the frame lies, and how many frames lie there in one run.
    [[nodiscard]] uint32_t positionOf(uint32_t count) const {
        return count % static_cast<uint32_t>(frames_);
    }
    [[nodiscard]] int32_t runFrom(uint32_t position) const {
        return frames_ - static_cast<int32_t>(position);
    }
    void sleep() const;

    std::vector<int32_t> samples_;
    int32_t channels_ = 0;
    int32_t frames_ = 0;
    int32_t sleepMs_ = 1;
    std::atomic<bool> open_{false};
    std::atomic<bool> flushed_{false};
    std::atomic<uint32_t> readCount_{0};
    std::atomic<uint32_t> writeCount_{0};
};

template <typename CopyIn>
int32_t SampleRing::Put(int32_t frames, CopyIn copyIn) {
    const int32_t count = std::min(frames, room());
    int32_t done = 0;
    while (done < count) {
        const uint32_t position = positionOf(writeCount_.load());
        const int32_t span = std::min(count - done, runFrom(position));
        for (int32_t channel = 0; channel < channels_; ++channel) {
            copyIn(channel, at(channel, position), done, span);
        }
        writeCount_.fetch_add(static_cast<uint32_t>(span));
        done += span;
    }
    return count;
}

template <typename CopyOut>
int32_t SampleRing::Take(int32_t frames, CopyOut copyOut) {
    const int32_t count = std::min(frames, Held());
    int32_t done = 0;
    while (done < count) {
        const uint32_t position = positionOf(readCount_.load());
        const int32_t span = std::min(count - done, runFrom(position));
        for (int32_t channel = 0; channel < channels_; ++channel) {
            copyOut(channel, at(channel, position), done, span);
        }
        readCount_.fetch_add(static_cast<uint32_t>(span));
        done += span;
    }
    return count;
}

}  // namespace tonvane
