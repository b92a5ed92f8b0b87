#include "app/AudioCommands.h"

#include <cstdio>
#include <memory>
#include <vector>

#include "app/ConsoleMessages.h"
#include "app/Interruption.h"
#include "app/OutputFiles.h"
#include "app/RunWatch.h"
#include "device/DeviceFaults.h"
#include "files/FileAccess.h"
#include "files/InputError.h"
#include "files/ResponseFile.h"
#include "stream/EqStream.h"
#include "transform/FftTables.h"
#include "tuning/WavePlayer.h"

namespace tonvane {

namespace {

int32_t measuringRate(const ChosenDevice& device, std::optional<int32_t> wanted,
                      const ProgramValues& values) {
    const int32_t rate = wanted.value_or(device.rate.value_or(values.InputSampleRate));
    if (!IsMeasuringRate(rate)) {
        throw InputError("--rate", "expected " + std::string(measuringRates));
    }
    if (device.rate.value_or(rate) != rate) {
        throw InputError(device.name, "the response is at " + std::to_string(*device.rate) +
                                          " Hz, not at the " + std::to_string(rate) +
                                          " Hz asked for");
    }
    return rate;
}

// As the end of a sentence.
std::string reasonOf(const CWaveDevice& device) {
    const std::string reason = RefusalOf(device);
    return reason.empty() ? reason : ": " + reason;
}

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
        char text[80];
        std::snprintf(text, sizeof text, "the file ends after %.2f seconds", seconds);
        throw InputError(options.path, text);
    }
}

}  // namespace

MeasurementReport MeasureInto(TuningRun& run, ProgramValues& values, const DeviceOptions& device,
                              std::optional<int32_t> rate) {
    const ChosenDevice chosen = ChooseDevice(device);
    values.InputSampleRate = measuringRate(chosen, rate, values);
    values.FilterSampleRate = values.InputSampleRate;
    values.ResponseIsCsv = false;
    run.InitTuningState();
    std::printf("Measuring on %s at %d Hz\n", chosen.name.c_str(), values.InputSampleRate);
    std::fflush(stdout);
    MeasurementReport report =
        MeasureResponse(*chosen.device, chosen.name, {device.limit(), {}}, run, values);
    if (!chosen.warning.empty()) {
        report.warnings.insert(report.warnings.begin(), chosen.warning);
    }
    return report;
}

void MeasureCommand(const MeasureOptions& options) {
    ExpectDistinctFiles({options.output, options.report.value_or("")}, {});
    InitFftTables(responseLength);
    ConsoleMessages messages;
    ProgramValues values;
    const auto run = std::make_unique<TuningRun>(values, messages);
    const MeasurementReport report = MeasureInto(*run, values, options.device, options.rate);
    std::printf("Response of %s\n%s", report.device.c_str(), SummaryText(report).c_str());
    writeFiles(options, *run, report);
}

void PlayCommand(const PlayOptions& options) {
    InitFftTables(responseLength);
    const ChosenDevice chosen = ChooseDevice(options.device);
    const InterruptMark interrupt;
    RunNews news;
    MeasurementConfig unused;
    CEqStream filter;
    CStreamEngine engine(unused);
    engine.SetDevice(chosen.device.get());
    engine.AttachFilter(&filter);
    engine.status.notifyWindow = &news;
    engine.inputFile.once = true;
    WavePlayer player(engine);
    openWaveFile(options, player);
    engine.inputFile.RequestSeek(options.from);
    if (!player.Play()) {
        if (!news.error.empty()) {
            throw InputError(options.path, "cannot be opened");
        }
        throw InputError(chosen.name, "cannot be opened for playing" + reasonOf(*chosen.device));
    }
    if (!chosen.warning.empty()) {
        std::printf("Warning: %s\n", chosen.warning.c_str());
    }
    std::printf("Playing %s on %s, %s\n", options.path.c_str(), chosen.name.c_str(),
                player.durationText.substr(3).c_str());
    std::fflush(stdout);
    const double duration = engine.inputFile.DurationSeconds();
    ProgressLine line("Playing");
    // The queue of the device plays on after the last frame has gone into it.
    const auto queue =
        std::chrono::seconds(CStreamEngine::queueFrames / engine.inputFile.format.sampleRate + 1);
    const RunEnd end = WatchRun(engine, news, options.device.limit() + queue,
                                [&] { line.show(engine.inputFile.PositionSeconds() / duration); });
    engine.Stop();
    if (end == RunEnd::interrupted) {
        throw Interrupted();
    }
    if (end != RunEnd::done) {
        throw InputError(chosen.name, end == RunEnd::lost ? "the device was lost"
                                                          : "the device has stopped playing");
    }
    line.show(1.0);
}

}  // namespace tonvane
