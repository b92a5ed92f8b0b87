#include "app/Measurement.h"

#include <algorithm>
#include <cmath>

#include <fmt/core.h>

#include "app/Interruption.h"
#include "app/RunWatch.h"
#include "files/InputError.h"
#include "files/RateRange.h"
#include "stream/EqStream.h"
#include "tuning/MeasurementRun.h"

namespace tonvane {

namespace {

// Peaks of a capture in dB of full scale.
constexpr double silentDb = -80.0;
constexpr double weakDb = -50.0;

// Frames that the capture takes: half a period, one block dropped, the periods and their pause, and
// the block that ends it.
double capturedFrames(const CStreamEngine& engine) {
    const int32_t blocks = engine.measurement.repeats + testPauseBlocks + 2;
    return testBlockFrames * (blocks + 0.5);
}

std::string peakText(double peakDb) {
    return std::isfinite(peakDb) ? fmt::format("{:.1f} dB", peakDb) : "zero";
}

void expectGoodRun(const CStreamEngine& engine, RunEnd end, bool complete,
                   const std::string& name) {
    if (end == RunEnd::interrupted) {
        throw Interrupted();
    }
    if (end == RunEnd::lost) {
        throw InputError(name, "the device was lost during the measurement");
    }
    if (end == RunEnd::stalled) {
        throw InputError(name, engine.waveIn.framesCaptured == 0
                                   ? "the device has delivered nothing"
                                   : "the device has stopped delivering");
    }
    if (!complete) {
        throw InputError(name, "the measurement has ended before it was complete");
    }
    if (const int32_t xruns = engine.device->xruns(); xruns > 0) {
        throw InputError(name, "the device counted " + std::to_string(xruns) +
                                   " gaps (xruns), so the measurement is not good; try again "
                                   "with nothing else running");
    }
}

void judgeLevel(const CStreamEngine& engine, MeasurementReport& report) {
    report.peakDb = 20.0 * std::log10(engine.waveIn.peak);
    report.clippedSamples = engine.waveIn.clippedSamples;
    if (report.peakDb < silentDb) {
        throw InputError(report.device, "the capture is silent (peak " + peakText(report.peakDb) +
                                            "): is the microphone connected and switched on?");
    }
    if (report.clippedSamples > 0) {
        report.warnings.push_back("The capture is clipped (" +
                                  std::to_string(report.clippedSamples) +
                                  " samples at full scale): turn the level down.");
    }
    if (report.peakDb < weakDb) {
        report.warnings.push_back("The capture is weak (peak " + peakText(report.peakDb) +
                                  "): turn the level up.");
    }
}

void expectUsableResponse(TuningRun& run, const std::string& name) {
    const auto samples = run.responseAnalyzer.response.time();
    if (!std::ranges::all_of(samples, [](double x) { return std::isfinite(x); })) {
        run.responseAnalyzer.reset();
        run.responseReady = false;
        throw InputError(name, "the capture gives no usable response");
    }
}

int32_t measuringRate(const ChosenDevice& device, std::optional<int32_t> wanted,
                      const ProgramValues& values) {
    const int32_t rate = wanted.value_or(device.rate.value_or(values.InputSampleRate));
    if (!IsUsableRate(rate)) {
        throw InputError("--rate", "expected " + std::string(usableRates));
    }
    if (device.rate.value_or(rate) != rate) {
        throw InputError(device.name, "the response is at " + std::to_string(*device.rate) +
                                          " Hz, not at the " + std::to_string(rate) +
                                          " Hz asked for");
    }
    return rate;
}

}  // namespace

MeasurementReport MeasureResponse(CWaveDevice& device, const std::string& name,
                                  const RunLimits& limits, TuningRun& run,
                                  const ProgramValues& values) {
    const InterruptMark interrupt;
    RunNews news;
    CEqStream filter;
    CStreamEngine engine(run.measurement, limits.intervals);
    engine.SetDevice(&device);
    engine.AttachFilter(&filter);
    engine.status.notifyWindow = &news;
    WavePlayer player(engine);
    MeasurementRun measurement(run, values, player);

    measurement.Measure();
    if (!measurement.started()) {
        const std::string reason = device.refusal();
        throw InputError(name, "cannot be opened for playing and capturing at " +
                                   std::to_string(run.designRate) + " Hz" +
                                   (reason.empty() ? reason : ": " + reason));
    }
    {
        ProgressLine line("Measuring");
        const auto share = [&] {
            line.show(static_cast<double>(engine.waveIn.framesCaptured) / capturedFrames(engine));
        };
        const RunEnd end = WatchRun(engine, news, limits.delivery, share);
        expectGoodRun(engine, end, news.isComplete, name);
        line.show(1.0);
    }
    engine.Stop();

    MeasurementReport report;
    report.device = name;
    report.sampleRate = run.measurement.sampleRate;
    report.periods = run.measurement.repeats;
    judgeLevel(engine, report);
    measurement.TakeCapture();
    expectUsableResponse(run, name);
    report.delaySamples = run.responseAnalyzer.delaySamples;
    report.polarity = run.responseAnalyzer.polarity();
    report.cutoffHz = run.responseAnalyzer.cutoffHz();
    return report;
}

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

}  // namespace tonvane
