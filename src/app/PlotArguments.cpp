#include "app/PlotArguments.h"

#include <memory>

#include "app/ConvertArguments.h"
#include "app/PlotCommand.h"

namespace tonvane {

namespace {

constexpr int32_t largestScale = 8;

// Without the picture's file.
void addLooks(CLI::App& command, PlotOptions& plot) {
    command
        .add_option("--show", plot.show,
                    "Curves in the plot, with commas between: target, measured, biquads (these "
                    "three if not given), fir, response, through-fir, through-biquads, passband, "
                    "or all")
        ->delimiter(',')
        ->allow_extra_args(false);
    command.add_option("--size", plot.size, "Size of the picture as WIDTHxHEIGHT in pixels")
        ->capture_default_str();
    command.add_option("--scale", plot.scale, "Enlarges the picture and everything in it")
        ->check(CLI::Range(1, largestScale))
        ->capture_default_str();
    command.add_option("--caption", plot.caption,
                       "Text below the plot; the figures of the design if not given");
}

}  // namespace

void AddResponseOptions(CLI::App& command, CLI::App& source, DesignOptions& options) {
    source.add_option("response", options.response,
                      "Speaker response: .qsr, a table of frequencies and levels, or a wave file");
    command.add_option(
        "--rate", options.rate,
        "Sample rate in Hz, 8000 to 192000, of a table (48000 if not given) or of raw samples");
    AddInputOptions(command, options.channel, options.strict);
    command.add_option("--target", options.target, "Target file; without one the target is flat");
    command
        .add_option("--gain-clamp", options.gainClamp,
                    "Loudness given up for the correction, 0 to -12 dB; ahead of the target "
                    "file's (-6 without either)")
        ->check(CLI::Range(-12, 0));
}

void AddDesignPlot(CLI::App& command, DesignOptions& options) {
    const auto plot = std::make_shared<PlotOptions>();
    CLI::Option* output =
        command.add_option("--plot", plot->output, "Picture of the design: .png, .svg or .pdf");
    addLooks(command, *plot);
    for (const char* look : {"--show", "--size", "--scale", "--caption"}) {
        command.get_option(look)->needs(output);
    }
    command.parse_complete_callback([&options, plot] {
        if (!plot->output.empty()) {
            options.plot = *plot;
        }
    });
}

void AddPlotCommand(CLI::App& app, std::function<void()>& run) {
    struct Arguments {
        DesignOptions design;
        PlotOptions plot;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* plot = app.add_subcommand("plot", "Draw a loudspeaker's response and its filter");
    auto* source = plot->add_option_group("source");
    source->require_option(1);
    AddResponseOptions(*plot, *source, arguments->design);
    plot->add_option("-o,--output", arguments->plot.output, "Picture: .png, .svg or .pdf")
        ->required();
    addLooks(*plot, arguments->plot);
    plot->callback(
        [&run, arguments] { run = [=] { RunPlotCommand(arguments->design, arguments->plot); }; });
    plot->footer("Example: tonvane-cli plot speaker.qsr --target target.txt -o speaker.png");
}

}  // namespace tonvane
