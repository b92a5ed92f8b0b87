#include "app/Measurement.h"

#include <algorithm>
#include <cmath>

#include <fmt/core.h>

#include "app/DeviceGuard.h"
#include "app/Interruption.h"
#include "app/RunWatch.h"
#include "files/InputError.h"
#include "files/RateRange.h"
#include "signal/PeriodShift.h"
#include "stream/EqStream.h"
#include "transform/ResponseShape.h"
#include "tuning/MeasurementRun.h"

namespace tonvane {

namespace {

// Peaks of a capture in dB of full scale.
constexpr double silentDb = -80.0;
constexpr double weakDb = -50.0;

// Of the response against the latency that a device promises.
constexpr int32_t mostEarlyFrames = 64;
constexpr double mostUsualDelayMs = 20.0;  // sound goes seven metres

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
    const auto refuse = [&](const std::string& fault) {
        throw InputError(name, fault +
                                   ", so the measurement is not good; try again with nothing "
                                   "else running");
    };
    if (const int32_t xruns = engine.device->xruns(); xruns > 0) {
        refuse(fmt::format("the device counted {} gaps (xruns)", xruns));
    }
    if (const int32_t latency = engine.device->Latency(); latency != engine.latency) {
        refuse(fmt::format("the device promised a latency of {} frames and then one of {}",
                           engine.latency, latency));
    }
    if (const int32_t shift = FindPeriodShift(engine.receiver.captured, testBlockFrames)) {
        refuse(
            fmt::format("the capture has slipped by {} frames, a gap that the device did not "
                        "count",
                        shift));
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

[[noreturn]] void refuseResponse(TuningRun& run, const std::string& name,
                                 const std::string& fault) {
    run.responseAnalyzer.reset();
    run.responseReady = false;
    throw InputError(name, fault);
}

void expectUsableResponse(TuningRun& run, const std::string& name) {
    const auto samples = run.responseAnalyzer.response.time();
    if (!std::ranges::all_of(samples, [](double x) { return std::isfinite(x); })) {
        refuseResponse(run, name, "the capture gives no usable response");
    }
}

// Sound cannot come before it is played; how much later it comes depends on the way, too. A device
// that says nothing of its latency promises nothing. The peak is taken: low tones have their onset
// ahead of it.
void judgeDelay(const CStreamEngine& engine, TuningRun& run, MeasurementReport& report) {
    const auto samples = run.responseAnalyzer.response.time();
    const auto peak = std::ranges::max_element(samples, {}, [](double x) { return std::fabs(x); });
    auto place = static_cast<int32_t>(peak - samples.begin()) - onsetLead;
    place -= place >= responseLength / 2 ? responseLength : 0;
    if (engine.latency > 0 && place < -mostEarlyFrames) {
        refuseResponse(run, report.device,
                       fmt::format("the response comes {} frames ahead of the latency that the "
                                   "device promises, so the measurement is not good",
                                   -place));
    }
    const double lateMs = 1000.0 * report.delaySamples / report.sampleRate;
    if (engine.latency > 0 && lateMs > mostUsualDelayMs) {
        report.warnings.push_back(fmt::format(
            "The response comes {:.0f} ms after the latency that the device promises: unless the "
            "loudspeaker delays it, frames were lost.",
            lateMs));
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

namespace {

// From the start to a capture that is good; the device still works then.
void capture(CStreamEngine& engine, MeasurementRun& measurement, const RunNews& news,
             const std::string& name, const RunLimits& limits, DeviceGuard& guard) {
    guard.expect(limits.opening, name + ": the device does not answer");
    measurement.Measure();
    guard.rest();
    if (!measurement.started()) {
        const std::string reason = engine.device->refusal();
        throw InputError(name, "cannot be opened for playing and capturing at " +
                                   std::to_string(engine.measurement.sampleRate) + " Hz" +
                                   (reason.empty() ? reason : ": " + reason));
    }
    ProgressLine line("Measuring");
    const auto share = [&] {
        line.show(static_cast<double>(engine.waveIn.framesCaptured) / capturedFrames(engine));
    };
    const RunEnd end = WatchRun(engine, news, limits.delivery, share);
    expectGoodRun(engine, end, news.isComplete, name);
    line.show(1.0);
}

}  // namespace

MeasurementReport MeasureResponse(CWaveDevice& device, const std::string& name,
                                  const RunLimits& limits, TuningRun& run,
                                  const ProgramValues& values) {
    const InterruptMark interrupt;
    DeviceGuard guard(limits.closing);
    RunNews news;
    CEqStream filter;
    CStreamEngine engine(run.measurement, limits.intervals);
    engine.SetDevice(&device);
    engine.AttachFilter(&filter);
    engine.status.notifyWindow = &news;
    WavePlayer player(engine);
    MeasurementRun measurement(run, values, player);

    try {
        capture(engine, measurement, news, name, limits, guard);
        guard.expect(limits.closing, name + ": the device does not close");
        engine.Stop();
        guard.rest();
    } catch (const std::exception& error) {
        guard.giveUp(error);
        throw;
    }

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
    judgeDelay(engine, run, report);
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
    return MeasureResponse(*chosen.device, chosen.name, {device.limit()}, run, values);
}

}  // namespace tonvane
