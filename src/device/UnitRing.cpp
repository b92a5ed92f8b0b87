#include "device/UnitRing.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

namespace tonvane {

bool UnitRing::Open(Direction direction, int32_t blockAlign, int32_t sampleRate, int32_t frames) {
    if (isOpen() || blockAlign < 1 || sampleRate < 1) {
        return false;
    }
    direction_ = direction;
    blockAlign_ = blockAlign;
    unitCount_ = frames / unitFrames;
    unitBytes_ = blockAlign * unitFrames;
    sleepMs_ = std::max(1000 * unitFrames / sampleRate / 4, 10);
    fill_ = 0;
    memory_.assign(static_cast<size_t>(unitCount_) * static_cast<size_t>(unitBytes_), {});
    submitted_ = 0;
    completed_ = 0;
    flushed_ = false;
    tokens_ = unitCount_;
    wakeUp_.emplace(unitCount_);
    open_ = true;
    if (direction_ == Direction::capture && onSubmit_) {
        for (int32_t unit = 0; unit < unitCount_; ++unit) {
            onSubmit_(unit);
        }
    }
    return true;
}

void UnitRing::Close() {
    if (open_.exchange(false)) {
        wakeUp_->Release();
    }
}

int32_t UnitRing::withDevice() const {
    const auto ahead = static_cast<int32_t>(submitted_.load() - completed_.load());
    return direction_ == Direction::play ? ahead : unitCount_ + ahead;
}

bool UnitRing::workerHasUnit() const {
    return withDevice() < unitCount_;
}

bool UnitRing::waitForUnit() {
    while (isOpen() && !workerHasUnit()) {
        wakeUp_->Acquire();
        tokens_.fetch_sub(1);
    }
    return isOpen();
}

void UnitRing::submit() {
    const auto unit = static_cast<int32_t>(submitted_.load() % static_cast<uint32_t>(unitCount_));
    fill_ = 0;
    submitted_.fetch_add(1);
    if (onSubmit_) {
        onSubmit_(unit);
    }
}

int32_t UnitRing::Write(const void* data, int32_t frames) {
    const auto* from = static_cast<const std::byte*>(data);
    const int32_t bytes = frames * blockAlign_;
    int32_t done = 0;
    flushed_ = false;
    while (done < bytes && waitForUnit()) {
        const auto unit = submitted_.load() % static_cast<uint32_t>(unitCount_);
        const int32_t count = std::min(bytes - done, unitBytes_ - fill_);
        std::memcpy(UnitAt(static_cast<int32_t>(unit)).data() + fill_, from + done,
                    static_cast<size_t>(count));
        done += count;
        fill_ += count;
        if (fill_ == unitBytes_) {
            submit();
        }
    }
    return done / blockAlign_;
}

int32_t UnitRing::Read(void* data, int32_t frames) {
    auto* to = static_cast<std::byte*>(data);
    const int32_t bytes = frames * blockAlign_;
    int32_t done = 0;
    while (done < bytes && waitForUnit()) {
        const auto unit = submitted_.load() % static_cast<uint32_t>(unitCount_);
        const int32_t count = std::min(bytes - done, unitBytes_ - fill_);
        std::memcpy(to + done, UnitAt(static_cast<int32_t>(unit)).data() + fill_,
                    static_cast<size_t>(count));
        done += count;
        fill_ += count;
        if (fill_ == unitBytes_) {
            submit();
        }
    }
    return done / blockAlign_;
}

void UnitRing::FlushOutput() {
    if (isOpen() && fill_ != 0) {
        const auto unit = submitted_.load() % static_cast<uint32_t>(unitCount_);
        const auto tail = UnitAt(static_cast<int32_t>(unit)).subspan(static_cast<size_t>(fill_));
        std::fill(tail.begin(), tail.end(), std::byte{0});
        submit();
    }
    flushed_ = true;
}

void UnitRing::WaitFilled() const {
    while (isOpen() && !isFlushed() && workerHasUnit()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(sleepMs_));
    }
}

void UnitRing::WaitEmpty() const {
    while (isOpen() && withDevice() > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(sleepMs_));
    }
}

std::span<std::byte> UnitRing::DeviceUnit(int32_t ahead) {
    if (withDevice() <= ahead) {
        return {};
    }
    const uint32_t unit =
        (completed_.load() + static_cast<uint32_t>(ahead)) % static_cast<uint32_t>(unitCount_);
    return UnitAt(static_cast<int32_t>(unit));
}

std::span<std::byte> UnitRing::UnitAt(int32_t unit) {
    return std::span(memory_).subspan(static_cast<size_t>(unit) * static_cast<size_t>(unitBytes_),
                                      static_cast<size_t>(unitBytes_));
}

void UnitRing::Complete() {
    // The counter first: a worker that is woken must find what it was woken for.
    completed_.fetch_add(1);
    int32_t tokens = tokens_.load();
    while (tokens < unitCount_) {
        if (tokens_.compare_exchange_weak(tokens, tokens + 1)) {
            wakeUp_->Release();
            return;
        }
    }
}

}  // namespace tonvane
