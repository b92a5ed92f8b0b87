// A program that runs beside the test.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tonvane::tests {

struct ProcessStart {
    std::vector<std::string> arguments;  // the program first
    std::string folder{};                // its working directory; empty for the test's
    std::map<std::string, std::string> environment{};
    std::string output{};  // file for what it prints; empty for nowhere
    int keptOpen = -1;     // a descriptor that it inherits
};

class Process {
  public:
    explicit Process(const ProcessStart& start);
    ~Process() { end(); }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    [[nodiscard]] pid_t id() const { return id_; }

    // Waits for its end; its exit code, nothing if it goes on or a signal ended it.
    std::optional<int> exitCode();

    void end();

  private:
    pid_t id_ = -1;
};

// Looks again and again, for some seconds, until a condition holds; whether it came to hold.
template <typename Condition>
bool Await(Condition holds);

}  // namespace tonvane::tests

#include <chrono>
#include <thread>

template <typename Condition>
bool tonvane::tests::Await(Condition holds) {
    using namespace std::chrono_literals;
    for (auto waited = 0ms; waited < 30s; waited += 20ms) {
        if (holds()) {
            return true;
        }
        std::this_thread::sleep_for(20ms);
    }
    return false;
}
