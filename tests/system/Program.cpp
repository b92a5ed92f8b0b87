#include "system/Program.h"

#include <cstdlib>

#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include "files/TestFiles.h"

namespace tonvane::tests {

namespace {

constexpr unsigned timeLimit = 60;  // seconds
constexpr int cannotStart = 126;

void useOneCore() {
    cpu_set_t allowed;
    sched_getaffinity(0, sizeof allowed, &allowed);
    int core = 0;
    while (!CPU_ISSET(core, &allowed)) {
        ++core;
    }
    CPU_ZERO(&allowed);
    CPU_SET(core, &allowed);
    sched_setaffinity(0, sizeof allowed, &allowed);
}

[[noreturn]] void becomeProgram(const std::vector<std::string>& arguments,
                                const ProgramSetting& setting, const std::string& output) {
    for (const auto& [name, descriptor] : {std::pair{"/out", 1}, std::pair{"/err", 2}}) {
        dup2(open((output + name).c_str(), O_WRONLY | O_CREAT, 0600), descriptor);
    }
    if (!setting.localeFolder.empty()) {
        setenv("LOCPATH", setting.localeFolder.c_str(), 1);
        setenv("LC_ALL", commaLocale, 1);
    }
    if (setting.onOneCore) {
        useOneCore();
    }
    std::vector<char*> argv{const_cast<char*>(TONVANE_CLI)};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    if (chdir(setting.folder.c_str()) == 0) {
        alarm(timeLimit);
        execv(argv[0], argv.data());
    }
    _exit(cannotStart);
}

}  // namespace

ProgramResult RunProgram(const std::vector<std::string>& arguments, const ProgramSetting& setting) {
    const TemporaryFolder output;
    const pid_t child = fork();
    if (child == 0) {
        becomeProgram(arguments, setting, output.path());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Contents(output / "out"),
            Contents(output / "err")};
}

}  // namespace tonvane::tests
