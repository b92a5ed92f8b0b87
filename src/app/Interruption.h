// Ctrl-C during a command that has something to bring to an end.
#pragma once

#include <stdexcept>
#include <string>

namespace tonvane {

// Thrown by a command that a person has interrupted, when everything is closed.
class Interrupted : public std::runtime_error {
  public:
    static constexpr int exitCode = 130;  // what a shell reports for a program ended by Ctrl-C

    explicit Interrupted(const std::string& text = "interrupted") : std::runtime_error(text) {}
};

// While it lives, Ctrl-C (SIGINT, SIGTERM; on Windows Ctrl-Break as well) only leaves a mark, the
// first time; a second one ends the program at once. One at a time.
class InterruptMark {
  public:
    InterruptMark();
    ~InterruptMark();
    InterruptMark(const InterruptMark&) = delete;
    InterruptMark& operator=(const InterruptMark&) = delete;

    // Any thread.
    [[nodiscard]] static bool isSet();
};

}  // namespace tonvane
