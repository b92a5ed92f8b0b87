#include "system/window/Process.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tonvane::tests {

namespace {

constexpr unsigned timeLimit = 120;  // seconds
constexpr int cannotStart = 126;

[[noreturn]] void become(const ProcessStart& start) {
    const std::string output = start.output.empty() ? "/dev/null" : start.output;
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(file, 1);
    dup2(file, 2);
    for (const auto& [name, value] : start.environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> argv;
    argv.reserve(start.arguments.size() + 1);
    for (const std::string& argument : start.arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    if (start.keptOpen >= 0) {
        fcntl(start.keptOpen, F_SETFD, 0);
    }
    if (start.folder.empty() || chdir(start.folder.c_str()) == 0) {
        alarm(timeLimit);
        execvp(argv[0], argv.data());
    }
    _exit(cannotStart);
}

}  // namespace

Process::Process(const ProcessStart& start) {
    id_ = fork();
    if (id_ == 0) {
        become(start);
    }
}

std::optional<int> Process::exitCode() {
    int status = 0;
    const bool ended = Await([&] { return waitpid(id_, &status, WNOHANG) == id_; });
    if (!ended) {
        return std::nullopt;
    }
    id_ = -1;
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

void Process::end() {
    if (id_ > 0) {
        kill(id_, SIGTERM);
        if (!exitCode()) {
            id_ = -1;
        }
    }
}

}  // namespace tonvane::tests
