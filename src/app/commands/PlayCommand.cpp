// play: a wave file through an audio device.
#include <chrono>
#include <cstdio>
#include <filesystem>
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
#include "wavefile/WaveFile.h"

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

// What the player would take for something else.
void checkPlayable(const std::string& path) {
    std::error_code ignored;
    const auto kind = std::filesystem::status(PathOf(path), ignored).type();
    if (kind != std::filesystem::file_type::regular &&
        kind != std::filesystem::file_type::not_found) {
        throw InputError(path, "is no plain file, and nothing else can be played");
    }
    ReadInputBytes(path, 1);
    CWaveFile file;
    int32_t rate = 0;
    int32_t bits = 0;
    int32_t channels = 0;
    if (!file.Open(path, rate, bits, channels)) {
        throw InputError(path, "is no wave file that can be played");
    }
    if (file.sampleTag() != CWaveFile::integers &&
        (file.sampleTag() != CWaveFile::floats || bits != 32)) {
        throw InputError(path,
                         fmt::format("expected 8 to 32 bit integers or float32 samples, found "
                                     "{} bits of format {}",
                                     bits, file.sampleTag()));
    }
    constexpr int32_t lowest = 1000;
    constexpr int32_t highest = 768000;
    if (rate < lowest || rate > highest) {
        throw InputError(path, fmt::format("the file's sample rate is {} Hz, expected {} to {} Hz",
                                           static_cast<uint32_t>(rate), lowest, highest));
    }
}

void openWaveFile(const PlayOptions& options, WavePlayer& player) {
    checkPlayable(options.path);
    player.engine.inputFile.takesFloats = true;
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
    if (engine.inputFile.isBroken()) {
        throw InputError(options.path, "cannot be read to its end");
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
