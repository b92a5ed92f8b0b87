// Keeps a sound server that does not answer from holding up the program.
#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <thread>

namespace tonvane {

// Prints the error that the program ends with, on standard error; a second one is not printed.
void PrintLastError(const std::string& text);

// Opening, stopping and closing a device may wait for a frozen server for ever, and cannot be taken
// back. While that goes on, a thread beside looks at the time and at Ctrl-C, and ends the program
// as it stands: with its error printed, and without closing anything. For one thread, and in the
// place where what it guards is closed before it.
class DeviceGuard {
  public:
    // How long a device may take to be closed.
    explicit DeviceGuard(std::chrono::milliseconds closing);
    ~DeviceGuard();
    DeviceGuard(const DeviceGuard&) = delete;
    DeviceGuard& operator=(const DeviceGuard&) = delete;

    // What begins now, to the next call, may take so long; the error of whoever takes longer.
    void expect(std::chrono::milliseconds limit, const std::string& error);

    // Nothing that may hold the program up.
    void rest();

    // The device begins to be closed, by the error that the program ends with: that is printed.
    void giveUp(const std::exception& error);

  private:
    using Clock = std::chrono::steady_clock;

    void set(Clock::time_point end, const std::string& error, int exitCode);
    void watch();

    const std::chrono::milliseconds closing_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Clock::time_point end_ = Clock::time_point::max();
    std::string error_;
    int exitCode_ = 0;
    bool isOver_ = false;
    std::thread thread_;
};

}  // namespace tonvane
