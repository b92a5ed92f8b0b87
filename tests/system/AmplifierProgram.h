// Runs the virtual amplifier as a process of its own beside the test.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "files/TestFiles.h"

namespace tonvane::tests {

class AmplifierProgram {
  public:
    // Listens on a port, 0 for a free one, and logs its frames.
    explicit AmplifierProgram(const std::vector<std::string>& arguments = {},
                              const std::string& port = "0");
    ~AmplifierProgram();
    AmplifierProgram(const AmplifierProgram&) = delete;
    AmplifierProgram& operator=(const AmplifierProgram&) = delete;

    // As a word of the command line; empty for a program that did not start.
    [[nodiscard]] const std::string& port() const { return port_; }

    // The lines of the log that have come since the last call.
    std::vector<std::string> frames();

    // Ends it with a signal, as a person would; its exit code, -1 when the signal killed it.
    int stop();

  private:
    TemporaryFolder folder_;
    pid_t process_ = -1;
    int output_ = -1;
    std::string port_;
    size_t linesTaken_ = 0;
    int exitCode_ = -1;
};

}  // namespace tonvane::tests
