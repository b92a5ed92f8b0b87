#include "system/AmplifierProgram.h"

#include <array>
#include <csignal>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace tonvane::tests {

AmplifierProgram::AmplifierProgram(const std::vector<std::string>& arguments,
                                   const std::string& port) {
    const std::string log = folder_ / "log";
    std::vector<std::string> all{TONVANE_VIRTUAL_AMPLIFIER, "--port", port, "--log", log};
    all.insert(all.end(), arguments.begin(), arguments.end());
    std::array<int, 2> pipeEnds{};
    if (pipe(pipeEnds.data()) != 0) {
        return;
    }
    process_ = fork();
    if (process_ == 0) {
        std::vector<char*> argv;
        for (std::string& argument : all) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        dup2(pipeEnds[1], 1);
        close(pipeEnds[0]);
        alarm(300);
        execv(argv[0], argv.data());
        _exit(126);
    }
    close(pipeEnds[1]);
    output_ = pipeEnds[0];
    std::string line;
    for (char c = 0; read(output_, &c, 1) == 1 && c != '\n';) {
        line += c;
    }
    port_ = line.substr(line.rfind(' ') + 1);
}

AmplifierProgram::~AmplifierProgram() {
    stop();
    close(output_);
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
    if (process_ > 0) {
        kill(process_, SIGTERM);
        int status = 0;
        waitpid(process_, &status, 0);
        process_ = -1;
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    return exitCode_;
}

}  // namespace tonvane::tests
