// tonvane: the tuning dialog, for calling tools (-cmd) and for people.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "app/WindowProgram.h"
#include "platform/System.h"
#include "ui/qt/TemplateWindow.h"

namespace {

constexpr int failure = 1;

constexpr const char* usage =
    "Usage: tonvane [-cmd RATE RESPONSE qsr|csv FILTERS TARGET -noprompt]\n"
    "\n"
    "The tuning dialog. With -cmd it comes up with the response loaded and equalized, and writes\n"
    "the filter file and the target file when it is closed.\n"
    "\n"
    "Exit code: 0 after Close, 2 after Escape or the window's close box.\n";

}  // namespace

int main(int argc, char** argv) {
    tonvane::KeepStandardStreams();
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        const std::string first = arguments.empty() ? "" : arguments[0];
        if (first == "--help" || first == "-h") {
            std::fputs(usage, stdout);
            return 0;
        }
        if (first == "--version") {
            std::puts("tonvane " TONVANE_VERSION);
            return 0;
        }
        return tonvane::RunWindowProgram(arguments, {}, [] {
            return std::make_unique<tonvane::TemplateWindow>(tonvane::MainDialogTemplate);
        });
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tonvane: %s\n", error.what());
        return failure;
    }
}
