// tonvane-lab: the tuning dialog with all of its controls in the open.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "app/WindowProgram.h"
#include "ui/qt/LabWindow.h"

namespace {

constexpr int failure = 1;

int runLab(int argc, char** argv) {
    CLI::App app{"The tuning dialog with all of its controls in the open."};
    app.set_version_flag("--version", std::string("tonvane-lab ") + TONVANE_VERSION);
    tonvane::WindowOptions options;
    options.simulatedDevice = true;
    app.add_option("--port", options.linkPort,
                   "Port of the amplifier's link server on this computer")
        ->check(CLI::Range(1, 65535));
    app.add_option("--layout", options.layoutFile,
                   "Write the places of the controls to a file: id, left, top, width, height");
    app.footer(
        "Start with a response: tonvane-lab [OPTIONS] -cmd RATE RESPONSE qsr|csv FILTERS TARGET");
    // From -cmd on the words are those of a batch start.
    const std::vector<std::string> words(argv + 1, argv + argc);
    const auto command = std::ranges::find(words, "-cmd");
    std::vector<std::string> own(words.begin(), command);
    std::ranges::reverse(own);  // as the parser takes a list
    try {
        app.parse(own);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    const std::vector<std::string> batch(command, words.end());
    return tonvane::RunWindowProgram(batch, options,
                                     [] { return std::make_unique<tonvane::LabWindow>(); });
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return runLab(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tonvane-lab: %s\n", error.what());
        return failure;
    }
}
