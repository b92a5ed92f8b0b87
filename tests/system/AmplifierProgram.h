// Runs the virtual amplifier as a process of its own beside the test.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "files/TestFiles.h"
#include "system/window/Process.h"

namespace tonvane::tests {

class AmplifierProgram {
  public:
    // Listens on a free port and logs its frames.
    explicit AmplifierProgram(const std::vector<std::string>& arguments = {});

    // As a word of the command line.
    [[nodiscard]] const std::string& port() const { return port_; }

    // The lines of the log that have come since the last call.
    std::vector<std::string> frames();

    // Ends it with a signal, as a person would, once; its exit code, -1 when the signal killed it.
    int stop();

  private:
    TemporaryFolder folder_;
    std::optional<Process> process_;
    std::string port_;
    size_t linesTaken_ = 0;
};

}  // namespace tonvane::tests
