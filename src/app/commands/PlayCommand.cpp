// play: a wave file through an audio device.
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include <fmt/core.h>

#include "app/DeviceChoice.h"
#include "app/DeviceGuard.h"
#include "app/Interruption.h"
#include "app/Measurement.h"
#include "app/RunWatch.h"
#include "app/commands/Commands.h"
#include "design/DesignGrid.h"
#include "files/InputError.h"
#include "platform/FileAccess.h"
#include "stream/EqStream.h"
#include "transform/FftTables.h"
#include "tuning/WavePlayer.h"

namespace tonvane {

namespace {

struct PlayOptions {
    DeviceOptions device;
    std::string path;   // wave file
    double from = 0.0;  // seconds
};

// As the end of a sentence.
std::string reasonOf(const CWaveDevice& device) {
    const std::string reason = device.refusal();
    return reason.empty() ? reason : ": " + reason;
}

void openWaveFile(const PlayOptions& options, WavePlayer& player) {
    if (!ReadBinaryFile(options.path, 1)) {
        throw InputError(options.path, "cannot be opened");
    }
    if (!player.OpenWaveFile(options.path)) {
        throw InputError(options.path, "is no wave file that can be played");
    }
    const double seconds = player.engine.inputFile.DurationSeconds();
    if (seconds <= 0.0) {
        throw InputError(options.path, "the file holds no sound");
    }
    if (options.from >= seconds) {
        throw InputError(options.path, fmt::format("the file ends after {:.2f} seconds", seconds));
    }
}

// From the start to the end of the file; the device is still open then.
void playToTheEnd(const PlayOptions& options, const std::string& device, const RunNews& news,
                  WavePlayer& player, DeviceGuard& guard) {
    CStreamEngine& engine = player.engine;
    openWaveFile(options, player);
    engine.inputFile.RequestSeek(options.from);
    guard.expect(options.device.limit(), device + ": the device does not answer");
    if (!player.Play()) {
        if (!news.error.empty()) {
            throw InputError(options.path, "cannot be opened");
        }
        throw InputError(device, "cannot be opened for playing" + reasonOf(*engine.device));
    }
    guard.rest();
    std::printf("Playing %s on %s, %s\n", options.path.c_str(), device.c_str(),
                player.durationText.substr(3).c_str());
    std::fflush(stdout);
    const double duration = engine.inputFile.DurationSeconds();
    ProgressLine line("Playing");
    // The queue of the device plays on after the last frame has gone into it.
    const auto queue =
        std::chrono::seconds(CStreamEngine::queueFrames / engine.inputFile.format.sampleRate + 1);
    const RunEnd end = WatchRun(engine, news, options.device.limit() + queue,
                                [&] { line.show(engine.inputFile.PositionSeconds() / duration); });
    if (end == RunEnd::interrupted) {
        throw Interrupted();
    }
    if (end != RunEnd::done) {
        throw InputError(
            device, end == RunEnd::lost ? "the device was lost" : "the device has stopped playing");
    }
    line.show(1.0);
}

// Prints what it does and leaves the device closed, however it ends. Throws InputError for what
// cannot be served and Interrupted for Ctrl-C; the error is printed ahead of the closing.
void play(const PlayOptions& options) {
    InitFftTables(responseLength);
    const ChosenDevice chosen = ChooseDevice(options.device);
    const InterruptMark interrupt;
    DeviceGuard guard(RunLimits::usualClosing);
    RunNews news;
    MeasurementConfig unused;
    CEqStream filter;
    CStreamEngine engine(unused);
    engine.SetDevice(chosen.device.get());
    engine.AttachFilter(&filter);
    engine.status.notifyWindow = &news;
    engine.inputFile.once = true;
    WavePlayer player(engine);
    try {
        playToTheEnd(options, chosen.name, news, player, guard);
        guard.expect(RunLimits::usualClosing, chosen.name + ": the device does not close");
        engine.Stop();
        guard.rest();
    } catch (const std::exception& error) {
        guard.giveUp(error);
        throw;
    }
}

}  // namespace

void AddPlayCommand(Command& program) {
    const auto options = std::make_shared<PlayOptions>();
    Command command = program.subcommand("play", "Play a wave file");
    command.option("file", options->path, "Wave file").required();
    AddDeviceOptions(command, options->device);
    command.option("--from", options->from, "Seconds to begin at").notNegative();
    command.action([options] { play(*options); });
}

}  // namespace tonvane
