// The engine and its workers on the simulated device.
#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "stream/EngineRun.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using std::chrono::milliseconds;
using tests::EngineRun;
using tests::WaitUntil;
using Samples = std::vector<double>;

constexpr int32_t period = 32768;
constexpr int32_t half = 16384;
constexpr double step = 1.0 / 2147483648.0;  // of 32 bits
constexpr int32_t endless = 30001;           // frames of a file that comes round 256 times

class Engine : public tests::WithFftTables {
  protected:
    // A mono file whose frame i holds (i + 1) / 32768.
    std::string makeFile(int32_t frames) const {
        std::string path = folder / "in.wav";
        Samples samples;
        for (int32_t i = 1; i <= frames; ++i) {
            samples.push_back(i / 32768.0);
        }
        CWaveFile file;
        file.Create(path, 8000, 16, 1);
        file.Write(samples.data(), frames);
        return path;
    }

    tests::TemporaryFolder folder;
};

TEST_F(Engine, AMeasurementPlaysItsPeriodsBetweenItsSilences) {
    EngineRun run;
    ASSERT_TRUE(run.engine.StartMeasurement());
    WaitUntil([&] { return run.engine.waveOut.framesPlayed == 11 * period; });
    run.engine.Stop();
    EXPECT_TRUE(run.isIdle());
    const Samples noise(run.config.signal.samples().begin(), run.config.signal.samples().end());
    const Samples& left = run.device.played.at(0);
    ASSERT_EQ(left.size(), 11U * period);
    for (size_t i = 0; i < left.size(); ++i) {
        const size_t block = i / period;
        ASSERT_NEAR(left[i], block >= 2 && block < 6 ? noise[i % period] : 0.0, 1.5 * step) << i;
    }
    EXPECT_EQ(run.device.played.at(1), Samples(11 * period, 0.0));
}

// Of the captured frames, counted from the first that was played, blocks of a period from 49152 on
// are averaged, and one more than are played.
TEST_F(Engine, AMeasurementAveragesTheFramesThatBelongToIt) {
    for (const int32_t repeats : {1, 4}) {
        EngineRun run(SimulatedSetup{.latency = 700});
        run.device.numberFrames = true;
        run.device.keep = false;
        run.config.repeats = repeats;
        ASSERT_TRUE(run.engine.StartMeasurement());
        run.waitForDone();
        EXPECT_TRUE(run.notify.isComplete);
        EXPECT_STREQ(run.engine.status.text(), "Analyzing ...");
        EXPECT_EQ(run.notify.statusCount, 2);
        run.engine.Stop();
        EXPECT_EQ(run.notify.framesAtDone, 700 + half + (1 + repeats + 3 + 1) * period);
        EXPECT_EQ(run.notify.doneCount, 1);
        const auto average = run.engine.receiver.accumulators[0].first(period);
        for (int32_t i = 0; i < period; ++i) {
            double sum = 0.0;
            for (int32_t block = 0; block <= repeats; ++block) {
                const double frame = 700 + half + period + block * period + i;
                sum += 2.0 * frame * 256.0 * step;
            }
            ASSERT_NEAR(average[i], sum / repeats, 1e-12) << i;
        }
    }
}

// Whatever the delay below half a period, and however far the reported latency is off.
TEST_F(Engine, AMeasurementGivesAWholePeriodAtEveryDelay) {
    for (const int32_t delay : {0, 1000, half - 1}) {
        EngineRun run(SimulatedSetup{.delay = delay});
        ASSERT_TRUE(run.engine.StartMeasurement());
        run.waitForDone();
        run.engine.Stop();
        const auto noise = run.config.signal.samples();
        const auto average = run.engine.receiver.accumulators[0].first(period);
        for (int32_t i = 0; i < period; ++i) {
            ASSERT_NEAR(average[i], noise[(i + half - delay + period) % period], 1.5 * step) << i;
        }
    }
}

TEST_F(Engine, ADeviceThatDoesNotOpenLeavesNothingBehind) {
    EngineRun run(SimulatedSetup{.refusesToOpen = true});
    EXPECT_FALSE(run.engine.StartMeasurement());
    EXPECT_TRUE(run.isIdle());
    ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
    EXPECT_FALSE(run.engine.StartPlayback());
    EXPECT_TRUE(run.isIdle());
    run.engine.SetDevice(nullptr);
    EXPECT_FALSE(run.engine.StartMeasurement());
    EXPECT_FALSE(run.engine.StartPlayback());
    run.engine.Stop();
}

TEST_F(Engine, ADeviceThatStandsStillDoesNotHoldUpAStop) {
    for (const bool measures : {true, false}) {
        EngineRun run(SimulatedSetup{.stopsAfter = 100000});
        ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
        ASSERT_TRUE(measures ? run.engine.StartMeasurement() : run.engine.StartPlayback());
        WaitUntil([&] { return run.device.framesPlayed() >= 100000; });
        run.engine.Stop();
        EXPECT_TRUE(run.isIdle());
        EXPECT_FALSE(run.notify.isComplete);
    }
}

TEST_F(Engine, ADeviceThatDisappearsEndsTheRun) {
    for (const bool measures : {true, false}) {
        EngineRun run(SimulatedSetup{.disappearsAfter = 100000});
        ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
        ASSERT_TRUE(measures ? run.engine.StartMeasurement() : run.engine.StartPlayback());
        run.waitForDone();
        EXPECT_TRUE(run.engine.deviceLost());
        EXPECT_FALSE(run.notify.isComplete);
        run.engine.Stop();
        EXPECT_TRUE(run.isIdle());
    }
}

// Also a file that does not fill the queue on which the device starts.
TEST_F(Engine, AFilePlaysToItsEndWithSilenceBehindIt) {
    for (const int32_t frames : {256, 20480}) {
        EngineRun run;
        ASSERT_TRUE(run.engine.OpenFile(makeFile(frames).c_str()));
        EXPECT_EQ(run.engine.playFormat, MakeWaveFormat(8000, 1, 16));
        ASSERT_TRUE(run.engine.StartPlayback());
        run.waitForDone();
        EXPECT_FALSE(run.notify.isComplete);
        run.engine.Stop();
        const Samples& heard = run.device.played.at(0);
        ASSERT_GE(heard.size(), std::max(frames + 1900U, 32768U));
        EXPECT_LT(heard.size(), 34000U);
        for (int32_t i = 0; i < static_cast<int32_t>(heard.size()); ++i) {
            ASSERT_EQ(heard[i], i < frames ? (i + 1) / 32768.0 : 0.0) << i;
        }
        EXPECT_TRUE(run.isIdle());
    }
}

TEST_F(Engine, APauseHoldsTheDeviceAndASeekGoesOnElsewhere) {
    EngineRun run;
    ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
    run.engine.inputFile.RequestSeek(1.0);
    ASSERT_TRUE(run.engine.StartPlayback());
    EXPECT_EQ(run.device.starts, 1);
    const int stops = run.device.stops;
    run.engine.paused = true;
    WaitUntil([&] { return run.device.stops > stops; });
    const int64_t held = run.engine.waveOut.framesPlayed;
    run.engine.inputFile.RequestSeek(2.0);
    EXPECT_EQ(run.engine.inputFile.PositionSeconds(), 2.0);
    EXPECT_EQ(run.engine.waveOut.framesPlayed, held);
    run.engine.paused = false;
    WaitUntil([&] { return run.device.starts == 2; });
    WaitUntil([&] { return run.engine.waveOut.framesPlayed > held + 4096; });
    run.engine.paused = true;
    run.engine.Stop();
    EXPECT_TRUE(run.isIdle());
    const Samples& heard = run.device.played.at(0);
    EXPECT_EQ(heard.at(0), 8001 / 32768.0);
    EXPECT_NE(std::ranges::find(heard, 16001 / 32768.0), heard.end());
}

TEST_F(Engine, StartsAndStopsTwoHundredTimesAtAnyMoment) {
    EngineRun run(SimulatedSetup{.patience = milliseconds(2)});
    run.device.keep = false;
    ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
    for (int cycle = 0; cycle < 200; ++cycle) {
        ASSERT_TRUE(cycle % 2 == 0 ? run.engine.StartMeasurement() : run.engine.StartPlayback());
        const int64_t frames = cycle % 4 < 2 ? 0 : cycle * 1000;
        WaitUntil([&] { return run.engine.waveOut.framesPlayed >= frames; });
        if (cycle % 8 == 7) {
            run.engine.paused = true;
        }
        run.engine.Stop();
        ASSERT_TRUE(run.isIdle());
    }
}

TEST_F(Engine, NothingOutlivesTheEngine) {
    // A worker that is left uses what is gone: the sanitizers' case.
    EngineRun run(SimulatedSetup{.stopsAfter = 50000});
    ASSERT_TRUE(run.engine.StartMeasurement());
}

TEST_F(Engine, DetachedChainsAreConnectedNoMore) {
    EngineRun run;
    EXPECT_EQ(run.engine.sender.next, &run.filter);
    EXPECT_EQ(run.filter.next, &run.engine.waveOut);
    run.engine.DetachFilter();
    for (const CDspStream* stage : std::initializer_list<CDspStream*>{
             &run.engine.inputFile, &run.engine.sender, &run.filter, &run.engine.waveIn}) {
        EXPECT_EQ(stage->next, nullptr);
    }
    run.engine.AttachFilter(nullptr);
    EXPECT_EQ(run.engine.sender.next, &run.engine.waveOut);
}

}  // namespace
}  // namespace tonvane
