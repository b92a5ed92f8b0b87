// A measurement for a person on a device with faults.
#include <cmath>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>
#include <unistd.h>

#include "app/ConsoleMessages.h"
#include "app/Interruption.h"
#include "app/Measurement.h"
#include "device/simulated/SimulatedWave.h"
#include "files/TestFiles.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class MeasuringForAPerson : public tests::WithFftTables {
  protected:
    MeasuringForAPerson() {
        values.ResponseIsCsv = false;
        run.InitTuningState();
    }
    MeasurementReport measure(const SimulatedSetup& setup,
                              milliseconds delivery = milliseconds(10000)) {
        CSimulatedWave device(setup);
        return MeasureResponse(device, "the room",
                               {delivery, {milliseconds(1), milliseconds(1), milliseconds(20)}},
                               run, values);
    }

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
        {{.gain = 0.0}, "silent (peak zero)"},
        {{.gain = 1e-5}, "silent (peak -1"},
    };
    for (const auto& fault : faults) {
        const std::string complaint =
            tests::ComplaintOf([&] { measure(fault.setup, milliseconds(200)); });
        EXPECT_THAT(complaint, HasSubstr(fault.complaint));
        EXPECT_THAT(complaint, testing::StartsWith("the room: "));
        EXPECT_FALSE(run.responseAnalyzer.valid) << fault.complaint;
    }
}

TEST_F(MeasuringForAPerson, TellsOfALevelThatIsTooHighOrTooLow) {
    const MeasurementReport good = measure({.delay = 100, .gain = -0.25});
    EXPECT_THAT(good.warnings, IsEmpty());
    EXPECT_EQ(good.delaySamples, 100);
    EXPECT_EQ(good.polarity, -1);
    const MeasurementReport loud = measure({.gain = 8.0});
    EXPECT_THAT(loud.warnings, ElementsAre(HasSubstr("clipped")));
    EXPECT_GT(loud.clippedSamples, 1000);
    EXPECT_NEAR(loud.peakDb, 0.0, 1e-6);
    const MeasurementReport faint = measure({.gain = 1e-3});
    EXPECT_THAT(faint.warnings, ElementsAre(HasSubstr("weak")));
    EXPECT_NEAR(faint.peakDb - good.peakDb, 20.0 * std::log10(1e-3 / 0.25), 1e-3);
}

TEST_F(MeasuringForAPerson, LeavesTheDeviceClosedOnCtrlC) {
    CSimulatedWave device({.stopsAfter = 100000});
    std::thread person([&] {
        while (device.framesPlayed() < 100000) {
            std::this_thread::sleep_for(milliseconds(1));
        }
        kill(getpid(), SIGINT);
    });
    EXPECT_THROW(
        MeasureResponse(device, "the room",
                        {milliseconds(60000), {milliseconds(1), milliseconds(1), milliseconds(20)}},
                        run, values),
        Interrupted);
    person.join();
    char sample[8] = {};
    EXPECT_EQ(device.Write(sample, 1), 0);
    EXPECT_FALSE(run.responseAnalyzer.valid);
}

}  // namespace
}  // namespace tonvane
