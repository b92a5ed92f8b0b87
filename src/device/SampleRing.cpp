#include "device/SampleRing.h"

#include <chrono>
#include <thread>

namespace tonvane {

void SampleRing::Open(int32_t channels, int32_t frames, int32_t sleepMs) {
    if (channels < 1 || frames < 1) {
        return;
    }
    channels_ = channels;
    frames_ = frames;
    sleepMs_ = std::max(sleepMs, 1);
    samples_.assign(static_cast<size_t>(channels) * static_cast<size_t>(frames), 0);
    readCount_ = 0;
    writeCount_ = 0;
    flushed_ = false;
    open_ = true;
}

void SampleRing::sleep() const {
    std::this_thread::sleep_for(std::chrono::milliseconds(sleepMs_));
}

int32_t SampleRing::Write(const int32_t* data, int32_t frames) {
    int32_t done = 0;
    flushed_ = false;
    while (isOpen() && done < frames) {
        const int32_t moved =
            Put(frames - done, [&](int32_t channel, int32_t* to, int32_t first, int32_t count) {
                std::copy_n(data + static_cast<size_t>(channel) * static_cast<size_t>(frames) +
                                done + first,
                            count, to);
            });
        done += moved;
        if (moved == 0) {
            sleep();
        }
    }
    return done;
}

int32_t SampleRing::Read(int32_t* data, int32_t frames) {
    int32_t done = 0;
    while (isOpen() && done < frames) {
        const int32_t moved = Take(
            frames - done, [&](int32_t channel, const int32_t* from, int32_t first, int32_t count) {
                std::copy_n(from, count,
                            data + static_cast<size_t>(channel) * static_cast<size_t>(frames) +
                                done + first);
            });
        done += moved;
        if (moved == 0) {
            sleep();
        }
    }
    return done;
}

void SampleRing::WaitFilled() const {
    while (isOpen() && !isFlushed() && room() > 0) {
        sleep();
    }
}

void SampleRing::WaitEmpty() const {
    while (isOpen() && Held() > 0) {
        sleep();
    }
}

}  // namespace tonvane
