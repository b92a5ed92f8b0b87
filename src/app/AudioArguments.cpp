#include "app/AudioArguments.h"

#include <memory>

#include "app/AudioCommands.h"

namespace tonvane {

void AddDeviceOptions(CLI::App& command, DeviceOptions& options, const char* timeoutName) {
    command.add_option("--device", options.device,
                       "Audio device: a name or an id of the list that \"tonvane-cli devices\" "
                       "prints, or simulated:FILE.qsr");
    command
        .add_option(timeoutName, options.timeLimitS, "Seconds that the device may deliver nothing")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
}

void AddAudioCommands(CLI::App& app, std::function<void()>& run) {
    CLI::App* devices = app.add_subcommand("devices", "List the audio devices");
    devices->callback([&run] { run = DevicesCommand; });

    const auto measureOptions = std::make_shared<MeasureOptions>();
    CLI::App* measure =
        app.add_subcommand("measure", "Measure a loudspeaker: play noise and capture it");
    AddDeviceOptions(*measure, measureOptions->device);
    measure->add_option("--rate", measureOptions->rate,
                        "Sample rate in Hz, even, 8000 to 192000 (48000)");
    measure->add_option("-o,--output", measureOptions->output, "Speaker response file to write")
        ->required();
    measure->add_option("--report", measureOptions->report,
                        "JSON file with the figures of the measurement");
    measure->callback(
        [&run, measureOptions] { run = [measureOptions] { MeasureCommand(*measureOptions); }; });
    measure->footer("Example: tonvane-cli measure -o speaker.qsr");

    const auto playOptions = std::make_shared<PlayOptions>();
    CLI::App* play = app.add_subcommand("play", "Play a wave file");
    play->add_option("file", playOptions->path, "Wave file")->required();
    AddDeviceOptions(*play, playOptions->device);
    play->add_option("--from", playOptions->from, "Seconds to begin at")
        ->check(CLI::NonNegativeNumber);
    play->callback([&run, playOptions] { run = [playOptions] { PlayCommand(*playOptions); }; });
}

}  // namespace tonvane
