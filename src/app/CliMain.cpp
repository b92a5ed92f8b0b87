// tonvane-cli: tuning without a window, for calling tools (-cmd) and for people (design, measure,
// plot, play, convert, link).
#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "app/AudioArguments.h"
#include "app/BatchCommand.h"
#include "app/ConvertArguments.h"
#include "app/DesignCommand.h"
#include "app/Interruption.h"
#include "app/LinkArguments.h"
#include "app/PlotArguments.h"
#include "app/ProgramArguments.h"

namespace {

constexpr int badInput = 1;
constexpr int badUsage = 2;

void addDesign(CLI::App& app, tonvane::DesignOptions& options, std::function<void()>& run) {
    CLI::App* design = app.add_subcommand("design", "Design a filter for a loudspeaker's response");
    auto* source = design->add_option_group("source");
    tonvane::AddResponseOptions(*design, *source, options);
    source->add_flag("--measure", options.measure, "Measure the response through the audio device");
    source->require_option(1);
    tonvane::AddDeviceOptions(*design, options.device, "--device-timeout");
    design->add_option("-o,--output", options.output, "Filter file to write")->required();
    design
        ->add_option("--format", options.format,
                     "Lines of the filter file: 20 (a section a line) or 4 (a word a line)")
        ->check(CLI::IsMember({20, 4}));
    design->add_option("--addresses", options.addresses,
                       "Address file such as registeraddress.cfg");
    design->add_option("--report", options.report,
                       "File with the figures of the design: .html for a page, else JSON");
    tonvane::AddExportOption(*design, options.exports);
    tonvane::AddDesignPlot(*design, options);
    design->add_flag("--program", options.program,
                     "Send the filter to the amplifier through the link server");
    tonvane::AddLinkOptions(*design, options.link);
    design->callback(
        [&run, &options] { run = [&options] { tonvane::RunDesignCommand(options); }; });
    design->footer("Example: tonvane-cli design speaker.qsr -o filters.txt --gain-clamp -6");
}

int runForPerson(std::vector<std::string> arguments) {
    CLI::App app{"Tunes small loudspeakers behind a digital amplifier."};
    app.set_version_flag("--version", std::string("tonvane-cli ") + TONVANE_VERSION);
    app.require_subcommand(1);
    app.allow_windows_style_options(false);  // a word with a slash is a path on every system
    app.footer(
        "Calling tools start: tonvane-cli -cmd RATE RESPONSE qsr|csv FILTERS TARGET -noprompt");
    tonvane::DesignOptions options;
    std::function<void()> run;
    addDesign(app, options, run);
    tonvane::AddConvertCommand(app, run);
    tonvane::AddPlotCommand(app, run);
    tonvane::AddAudioCommands(app, run);
    tonvane::AddLinkCommand(app, run);
    try {
        std::ranges::reverse(arguments);  // the parser takes them from the end
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : badUsage;
    }
    run();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::vector<std::string> arguments = tonvane::ProgramArguments(argc, argv);
        if (!arguments.empty() && arguments[0] == "-cmd") {
            return tonvane::RunBatch(arguments);
        }
        return runForPerson(std::move(arguments));
    } catch (const tonvane::Interrupted& error) {
        std::fprintf(stderr, "tonvane-cli: %s\n", error.what());
        return tonvane::Interrupted::exitCode;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tonvane-cli: %s\n", error.what());
        return badInput;
    }
}
