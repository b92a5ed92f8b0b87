// A measurement for a person on simulated devices, good ones and faulty ones.
#include <cmath>
#include <csignal>
#include <memory>
#include <thread>

#include <gmock/gmock.h>
#include <unistd.h>

#include "app/ConsoleMessages.h"
#include "app/Interruption.h"
#include "app/Measurement.h"
#include "device/simulated/SimulatedSpeaker.h"
#include "device/simulated/SimulatedWave.h"
#include "files/ResponseFile.h"
#include "files/TestFiles.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// One that is to stand still does so by the time that its run is watched.
struct StandingDevice : CSimulatedWave {
    using CSimulatedWave::CSimulatedWave;

    bool Start() override {
        const bool started = CSimulatedWave::Start();
        while (framesPlayed() < stop) {
            std::this_thread::sleep_for(milliseconds(1));
        }
        if (isInterrupted) {
            kill(getpid(), SIGINT);
        }
        return started;
    }

    int64_t stop = 0;
    bool isInterrupted = false;
};

class MeasuringForAPerson : public tests::WithFftTables {
  protected:
    MeasuringForAPerson() {
        values.ResponseIsCsv = false;
        run.InitTuningState();
    }
    MeasurementReport measure(SimulatedSetup setup, bool isInterrupted = false) {
        constexpr milliseconds tick(1);
        constexpr std::chrono::hours patience(1);  // of either worker with the other
        setup.patience = patience;
        const bool standsStill = setup.stopsAfter != SimulatedSetup::never;
        device = std::make_unique<StandingDevice>(setup);
        device->stop = standsStill ? setup.stopsAfter : 0;
        device->isInterrupted = isInterrupted;
        return MeasureResponse(
            *device, "the room",
            {standsStill ? tick : patience, {tick, tick, 20 * tick}, patience, patience}, run,
            values);
    }

    std::unique_ptr<StandingDevice> device;
    ConsoleMessages messages;
    ProgramValues values;
    TuningRun run{values, messages};
};

TEST_F(MeasuringForAPerson, TakesNoFaultyRunForGood) {
    const struct {
        SimulatedSetup setup;
        const char* complaint;
    } faults[] = {
        {{.refusesToOpen = true}, "cannot be opened for playing and capturing at 48000 Hz"},
        {{.stopsAfter = 0}, "delivered nothing"},
        {{.stopsAfter = 200000}, "stopped delivering"},
        {{.disappearsAfter = 200000}, "lost during the measurement"},
        {{.xrunAfter = 200000}, "counted 1 gap"},
        {{.slipsAfter = 100000}, "slipped by 1024 frames"},
        {{.changesLatencyAfter = 200000}, "a latency of 0 frames and then one of 1024"},
        {{.latency = 2000}, "comes 2000 frames ahead"},
        {{.gain = 0.0}, "silent (peak zero)"},
        {{.gain = 1e-5}, "silent (peak -1"},
    };
    for (const auto& fault : faults) {
        const std::string complaint = tests::ComplaintOf([&] { measure(fault.setup); });
        EXPECT_THAT(complaint, HasSubstr(fault.complaint));
        EXPECT_THAT(complaint, testing::StartsWith("the room: "));
        EXPECT_FALSE(run.responseAnalyzer.valid) << fault.complaint;
    }
}

TEST_F(MeasuringForAPerson, GivesTheSpeakersResponseBack) {
    const SpeakerResponse speaker =
        ReadCheckedResponseFile(tests::ExampleFile("small-speaker.qsr"));
    std::vector<double> direct(responseLength, 0.0);
    direct[32] = 1.0;  // where the onset of a path without delay comes
    const struct {
        SimulatedSetup setup;
        std::vector<double> samples;
        int32_t lead;
        double withinDb;
    } cases[] = {{SimulatedSpeaker(speaker.samples), speaker.samples, 32, 0.01},
                 {{.bits = 16}, direct, 0, 0.01},
                 {{.bits = 32}, direct, 0, 1e-5}};
    for (const auto& c : cases) {
        const MeasurementReport report = measure(c.setup);
        ResponseAnalyzer expected;
        expected.loadImpulse(48000, responseLength, c.samples);
        EXPECT_EQ(report.delaySamples, expected.delaySamples + c.lead);
        EXPECT_EQ(report.polarity, expected.polarity());
        EXPECT_EQ(report.cutoffHz, expected.cutoffHz());
        for (int32_t k = 28; k < 13654; ++k) {  // 40 Hz to 20 kHz
            const double ratio = std::abs(run.responseAnalyzer.response.spectrum[k]) /
                                 std::abs(expected.response.spectrum[k]);
            ASSERT_NEAR(tests::Decibels(ratio), 0.0, c.withinDb) << k;
        }
    }
}

TEST_F(MeasuringForAPerson, TellsOfALevelThatIsTooHighOrTooLowAndOfALateResponse) {
    const MeasurementReport good = measure({.delay = 100, .gain = -0.25});
    EXPECT_THAT(good.warnings, IsEmpty());
    EXPECT_EQ(good.delaySamples, 100);
    EXPECT_EQ(good.polarity, -1);
    const MeasurementReport loud = measure({.gain = 8.0});
    EXPECT_THAT(loud.warnings, ElementsAre(HasSubstr("clipped")));
    EXPECT_GT(loud.clippedSamples, 1000);
    EXPECT_NEAR(loud.peakDb, 0.0, 1e-6);
    const MeasurementReport late = measure({.delay = 1501, .latency = 1});
    EXPECT_THAT(late.warnings, ElementsAre(HasSubstr("comes 31 ms after")));
    const MeasurementReport faint = measure({.gain = 1e-3});
    EXPECT_THAT(faint.warnings, ElementsAre(HasSubstr("weak")));
    EXPECT_NEAR(faint.peakDb - good.peakDb, 20.0 * std::log10(1e-3 / 0.25), 1e-3);
}

TEST_F(MeasuringForAPerson, LeavesTheDeviceClosedOnCtrlC) {
    EXPECT_THROW(measure({.stopsAfter = 100000}, true), Interrupted);
    char sample[8] = {};
    EXPECT_EQ(device->Write(sample, 1), 0);
    EXPECT_FALSE(run.responseAnalyzer.valid);
}

}  // namespace
}  // namespace tonvane
