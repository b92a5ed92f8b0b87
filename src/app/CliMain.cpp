// tonvane-cli: tuning without a window, for calling tools (-cmd) and for people (commands).
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "app/BatchStart.h"
#include "app/DeviceGuard.h"
#include "app/Interruption.h"
#include "app/commands/Commands.h"
#include "commandline/CommandParser.h"
#include "platform/System.h"
#include "transform/FftTables.h"

namespace {

constexpr int badInput = 1;

// What was printed has to have got there as well.
int withOutput(int exitCode) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
        return exitCode;
    }
    std::fprintf(stderr, "tonvane-cli: standard output cannot be written\n");
    return badInput;
}

int runForPerson(const std::vector<std::string>& arguments) {
    tonvane::CommandParser program("Tunes small loudspeakers behind a digital amplifier.",
                                   "tonvane-cli " TONVANE_VERSION);
    program.footer(
        "Calling tools start: tonvane-cli -cmd RATE RESPONSE qsr|csv FILTERS TARGET -noprompt");
    for (const auto& add : tonvane::allCommands) {
        add(program);
    }
    const int exitCode = program.run(arguments);
    tonvane::FreeFftTables();
    return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
    tonvane::KeepStandardStreams();
    try {
        const std::vector<std::string> arguments = tonvane::ProgramArguments(argc, argv);
        if (!arguments.empty() && arguments[0] == "-cmd") {
            return tonvane::RunBatchStart(arguments);
        }
        return withOutput(runForPerson(arguments));
    } catch (const tonvane::Interrupted& error) {
        tonvane::PrintLastError(error.what());
        return tonvane::Interrupted::exitCode;
    } catch (const std::exception& error) {
        tonvane::PrintLastError(error.what());
        return badInput;
    }
}
