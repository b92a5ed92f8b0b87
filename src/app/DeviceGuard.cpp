#include "app/DeviceGuard.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "app/Interruption.h"

namespace tonvane {

namespace {

constexpr int badDevice = 1;
constexpr std::chrono::milliseconds interruptInterval{50};

}  // namespace

void PrintLastError(const std::string& text) {
    static std::atomic<bool> isPrinted{false};
    if (!isPrinted.exchange(true)) {
        std::fflush(stdout);
        std::fprintf(stderr, "tonvane-cli: %s\n", text.c_str());
    }
}

DeviceGuard::DeviceGuard(std::chrono::milliseconds closing)
    : closing_(closing), thread_([this] { watch(); }) {}

DeviceGuard::~DeviceGuard() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void DeviceGuard::set(Clock::time_point end, const std::string& error, int exitCode) {
    const std::lock_guard lock(mutex_);
    end_ = end;
    error_ = error;
    exitCode_ = exitCode;
    changed_.notify_all();
}

void DeviceGuard::expect(std::chrono::milliseconds limit, const std::string& error) {
    set(Clock::now() + limit, error, badDevice);
}

void DeviceGuard::rest() {
    set(Clock::time_point::max(), "", 0);
}

void DeviceGuard::giveUp(const std::exception& error) {
    PrintLastError(error.what());
    const bool isInterrupted = dynamic_cast<const Interrupted*>(&error) != nullptr;
    set(Clock::now() + closing_, error.what(), isInterrupted ? Interrupted::exitCode : badDevice);
}

void DeviceGuard::watch() {
    std::unique_lock lock(mutex_);
    while (!isOver_) {
        if (end_ == Clock::time_point::max()) {
            changed_.wait(lock);
            continue;
        }
        const Clock::time_point now = Clock::now();
        if (now >= end_) {
            PrintLastError(error_);
            std::_Exit(exitCode_);
        }
        if (InterruptMark::isSet() && exitCode_ != Interrupted::exitCode) {
            error_ = Interrupted().what();
            exitCode_ = Interrupted::exitCode;
            end_ = std::min(end_, now + closing_);
        }
        changed_.wait_until(lock, std::min(end_, now + interruptInterval));
    }
}

}  // namespace tonvane
