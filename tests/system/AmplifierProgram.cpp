#include "system/AmplifierProgram.h"

#include <csignal>
#include <sstream>

namespace tonvane::tests {

AmplifierProgram::AmplifierProgram(const std::vector<std::string>& arguments) {
    ProcessStart start{{TONVANE_VIRTUAL_AMPLIFIER, "--port", "0", "--log", folder_ / "log"}};
    start.arguments.insert(start.arguments.end(), arguments.begin(), arguments.end());
    start.output = folder_ / "output";
    process_.emplace(start);
    Await([&] { return Contents(start.output).ends_with('\n'); });
    const std::string line = Contents(start.output);
    port_ = line.substr(line.rfind(' ') + 1, line.find('\n') - line.rfind(' ') - 1);
}

std::vector<std::string> AmplifierProgram::frames() {
    std::vector<std::string> lines;
    std::istringstream text(Contents(folder_ / "log"));
    size_t number = 0;
    for (std::string line; std::getline(text, line); ++number) {
        if (number >= linesTaken_) {
            lines.push_back(line);
        }
    }
    linesTaken_ = number;
    return lines;
}

int AmplifierProgram::stop() {
    if (process_->id() <= 0) {
        return -1;
    }
    kill(process_->id(), SIGTERM);
    return process_->exitCode().value_or(-1);
}

}  // namespace tonvane::tests
