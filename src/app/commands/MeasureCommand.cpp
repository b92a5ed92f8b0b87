// measure: a loudspeaker's response through an audio device.
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/ConsoleMessages.h"
#include "app/Measurement.h"
#include "app/OutputFiles.h"
#include "app/commands/Commands.h"
#include "files/ResponseFile.h"
#include "transform/FftTables.h"

namespace tonvane {

namespace {

struct MeasureOptions {
    DeviceOptions device;
    std::optional<int32_t> rate;        // Hz; without one the device's only one, or 48000
    std::string output;                 // speaker response file
    std::optional<std::string> report;  // JSON report
};

// Both files or none.
void writeFiles(const MeasureOptions& options, const TuningRun& run,
                const MeasurementReport& report) {
    std::vector<NewContents> files{
        {options.output,
         FormatResponseFile(report.sampleRate, run.responseAnalyzer.response.time())}};
    if (options.report) {
        files.push_back({*options.report, FormatJsonReport(report)});
    }
    WriteOutputs(files);
    for (const NewContents& file : files) {
        std::printf("Wrote %s\n", file.path.c_str());
    }
}

// Prints what it does and leaves the device closed, however it ends. Throws InputError for what
// cannot be served and Interrupted for Ctrl-C; nothing is written then.
void measure(const MeasureOptions& options) {
    PrepareOutputs({options.output, options.report.value_or("")}, {FileOfDevice(options.device)});
    InitFftTables(responseLength);
    ConsoleMessages messages;
    ProgramValues values;
    const auto run = std::make_unique<TuningRun>(values, messages);
    const MeasurementReport report = MeasureInto(*run, values, options.device, options.rate);
    std::printf("Response of %s\n%s", report.device.c_str(), SummaryText(report).c_str());
    writeFiles(options, *run, report);
}

}  // namespace

void AddMeasureCommand(Command& program) {
    const auto options = std::make_shared<MeasureOptions>();
    Command command =
        program.subcommand("measure", "Measure a loudspeaker: play noise and capture it");
    AddDeviceOptions(command, options->device);
    command.option("--rate", options->rate, "Sample rate in Hz, 8000 to 192000 (48000)");
    command.option("-o,--output", options->output, "Speaker response file to write")
        .required()
        .fileName();
    command.option("--report", options->report, "JSON file with the figures of the measurement")
        .fileName();
    command.footer("Example: tonvane-cli measure -o speaker.qsr");
    command.action([options] { measure(*options); });
}

}  // namespace tonvane
