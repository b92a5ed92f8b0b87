// A measurement as a tuning run makes it, on the simulated device, and the player.
#include <cmath>

#include <gmock/gmock.h>

#include "device/simulated/SimulatedSpeaker.h"
#include "files/ResponseFile.h"
#include "files/TestFiles.h"
#include "stream/EqStream.h"
#include "support/Signals.h"
#include "tuning/MeasurementRun.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

struct Log : Messages, TuningView {
    void error(const std::string& text) override { lines.push_back("error " + text); }
    bool confirm(const std::string& /*text*/, const std::string& /*caption*/) override {
        return true;
    }
    void status(int line, const std::string& text) override {
        lines.push_back(std::to_string(line) + text);
    }
    void UpdateResultList() override { lines.emplace_back("list"); }
    void RedrawCurves() override { lines.emplace_back("curves"); }
    void SetEditControlsEnabled(bool enabled) override {
        lines.emplace_back(enabled ? "enable" : "disable");
    }
    Texts lines;
};

struct DoneNotify : StreamNotify {
    void postCaptureDone(bool complete) override {
        isComplete = complete;
        isDone = true;
    }
    void postStatus() override {}
    void showError(const std::string& /*text*/) override {}
    std::atomic<bool> isDone{false}, isComplete{false};
};

// The example speaker's impulse response.
SpeakerResponse exampleSpeaker() {
    return ReadCheckedResponseFile(TONVANE_EXAMPLES "/small-speaker.qsr");
}

class Measuring : public tests::WithFftTables {
  protected:
    void start(const SimulatedSetup& setup) {
        values.ResponseIsCsv = false;
        values.AppDirectory = folder.path() + "/";
        values.InitialGainClamp = -6;
        device = std::make_unique<CSimulatedWave>(setup);
        run = std::make_unique<TuningRun>(values, log, &log);
        run->InitTuningState();
        engine = std::make_unique<CStreamEngine>(
            run->measurement,
            CStreamEngine::Intervals{std::chrono::milliseconds(1), std::chrono::milliseconds(1)});
        engine->SetDevice(device.get());
        engine->AttachFilter(&filter);
        engine->status.notifyWindow = &notify;
        player = std::make_unique<WavePlayer>(*engine);
        measurement = std::make_unique<MeasurementRun>(*run, values, *player, &log);
        log.lines.clear();
    }
    void measure() {
        measurement->Measure();
        ASSERT_TRUE(measurement->started());
        while (!notify.isDone) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        measurement->ShowStatus();
        measurement->CaptureDone(notify.isComplete);
    }
    // The largest difference in dB from 40 Hz to 20 kHz of the measured response to these samples.
    [[nodiscard]] double largestDifferenceDb(std::span<const double> samples) const {
        SpectrumBuffer expected;
        expected.resize(responseLength);
        std::ranges::copy(samples, expected.time().begin());
        expected.forward();
        double largest = 0.0;
        for (int32_t k = 0; k < expected.bins; ++k) {
            const double hertz = k * 48000.0 / responseLength;
            if (hertz >= 40.0 && hertz <= 20000.0) {
                const double ratio = std::abs(run->responseAnalyzer.response.spectrum[k]) /
                                     std::abs(expected.spectrum[k]);
                largest = std::max(largest, std::fabs(tests::Decibels(ratio)));
            }
        }
        return largest;
    }

    tests::TemporaryFolder folder;
    Log log;
    ProgramValues values;
    DoneNotify notify;
    CEqStream filter;
    std::unique_ptr<CSimulatedWave> device;
    std::unique_ptr<TuningRun> run;
    std::unique_ptr<CStreamEngine> engine;
    std::unique_ptr<WavePlayer> player;
    std::unique_ptr<MeasurementRun> measurement;
};

TEST_F(Measuring, GivesTheSpeakersResponseBack) {
    const SpeakerResponse speaker = exampleSpeaker();
    start(SimulatedSpeaker(speaker.samples));
    measure();
    EXPECT_LT(largestDifferenceDb(speaker.samples), 0.01);
    EXPECT_EQ(engine->waveIn.clippedSamples, 0);
    EXPECT_THAT(log.lines,
                ElementsAre("1Preparing ...", "2", "disable", "list", "curves", "1Analyzing ...",
                            "curves", "list", "curves", "1", "2", "enable"));

    // The speaker's onset is that of its file, 32 samples later.
    ResponseAnalyzer direct;
    direct.loadImpulse(48000, responseLength, speaker.samples);
    EXPECT_EQ(run->responseAnalyzer.delaySamples, direct.delaySamples + 32);
    EXPECT_EQ(run->responseAnalyzer.polarity, direct.polarity);
    EXPECT_EQ(run->responseAnalyzer.cutoffHz, direct.cutoffHz);
}

struct Width {
    int bits;
    double withinDb;
};

class MeasuringWidths : public Measuring, public testing::WithParamInterface<Width> {};

TEST_P(MeasuringWidths, HasTheOnsetOfADirectPathAtSample32AndItsFlatSpectrum) {
    start({.bits = GetParam().bits});
    measure();
    EXPECT_EQ(run->responseAnalyzer.delaySamples, 0);
    std::vector<double> impulse(responseLength, 0.0);
    impulse[32] = 1.0;
    EXPECT_LT(largestDifferenceDb(impulse), GetParam().withinDb);
}

INSTANTIATE_TEST_SUITE_P(Bits, MeasuringWidths, testing::Values(Width{16, 0.01}, Width{32, 1e-5}),
                         [](const auto& instance) { return std::to_string(instance.param.bits); });

}  // namespace
}  // namespace tonvane
