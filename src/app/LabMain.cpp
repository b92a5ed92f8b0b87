// tonvane-lab: the tuning dialog with all of its controls in the open.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "app/WindowProgram.h"
#include "commandline/CommandParser.h"
#include "platform/System.h"
#include "ui/qt/LabWindow.h"

namespace {

constexpr int failure = 1;

int runLab(int argc, char** argv) {
    tonvane::CommandParser program("The tuning dialog with all of its controls in the open.",
                                   "tonvane-lab " TONVANE_VERSION);
    tonvane::WindowOptions options;
    options.simulatedDevice = true;
    options.fitMethod = tonvane::FitMethod::refined;
    options.followsMouse = true;
    program
        .option("--port", options.linkPort, "Port of the amplifier's link server on this computer")
        .range(1, 65535);
    program.option("--layout", options.layoutFile,
                   "Write the places of the controls to a file: id, left, top, width, height");
    program.footer(
        "Start with a response: tonvane-lab [OPTIONS] -cmd RATE RESPONSE qsr|csv FILTERS TARGET");
    // From -cmd on the words are those of a batch start.
    const std::vector<std::string> words(argv + 1, argv + argc);
    const auto command = std::ranges::find(words, "-cmd");
    int exitCode = 0;
    program.action([&] {
        exitCode = tonvane::RunWindowProgram({command, words.end()}, options,
                                             [] { return std::make_unique<tonvane::LabWindow>(); });
    });
    const int parsed = program.run({words.begin(), command});
    return parsed == 0 ? exitCode : parsed;
}

}  // namespace

int main(int argc, char** argv) {
    tonvane::KeepStandardStreams();
    try {
        return runLab(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tonvane-lab: %s\n", error.what());
        return failure;
    }
}
