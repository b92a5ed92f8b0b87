// The engine and its workers on the simulated device.
#include <gmock/gmock.h>

#include "device/simulated/SimulatedWave.h"
#include "files/TestFiles.h"
#include "stream/EqStream.h"
#include "stream/StreamEngine.h"
#include "support/Signals.h"
#include "support/WaveBytes.h"

namespace tonvane {
namespace {

using std::chrono::milliseconds;
using Samples = std::vector<double>;

constexpr int32_t period = 32768;
constexpr int32_t half = 16384;
constexpr double lowestBit = 0x1p-31;
constexpr int32_t endless = 30001;  // frames of a file that comes round 256 times

// Waits for what another thread does; a test that waits in vain ends by the runner's limit.
template <typename Condition>
void waitUntil(Condition condition) {
    while (!condition()) {
        std::this_thread::sleep_for(milliseconds(1));
    }
}

// The simulated device with an ear at its input, in samples of 32 bits, planar.
struct TapDevice : CSimulatedWave {
    using CSimulatedWave::CSimulatedWave;

    bool Open(const WAVEFORMATEX* in, const WAVEFORMATEX* out, int frames, void* notify) override {
        played.assign(static_cast<size_t>(out->channels), {});
        return CSimulatedWave::Open(in, out, frames, notify);
    }
    void Stop() override {
        ++stops;
        CSimulatedWave::Stop();
    }
    int Write(const void* data, int frames) override {
        const auto* words = static_cast<const int32_t*>(data);
        for (Samples& channel : played) {
            std::transform(words, words + frames, std::back_inserter(channel),
                           [](int32_t word) { return word * lowestBit; });
            words += frames;
        }
        return CSimulatedWave::Write(data, frames);
    }
    std::vector<Samples> played;  // by channel
    std::atomic<int> stops{0};
};

// The device waits for either worker as long as it takes.
struct EngineRun : StreamNotify {
    explicit EngineRun(SimulatedSetup setup = {})
        : device((setup.patience = std::chrono::hours(1), setup)) {
        config.sampleRate = 48000;
        config.repeats = 4;
        config.signal.sampleRate = 48000;
        config.signal.setOrder(15);
        config.signal.generate();
        engine.status.notifyWindow = this;
        engine.SetDevice(&device);
        engine.AttachFilter(&filter);
    }
    void postCaptureDone(bool complete) override {
        framesAtDone = engine.waveIn.framesCaptured.load();
        isComplete = complete;
        ++doneCount;
    }
    void postStatus() override { ++statusCount; }
    void showError(const std::string& /*text*/) override {}

    void waitForDone() const {
        waitUntil([this] { return doneCount > 0; });
    }
    [[nodiscard]] bool isIdle() {
        const int32_t frame[2] = {};
        return engine.captureThread == CStreamEngine::noThread &&
               engine.outputThread == CStreamEngine::noThread && !engine.playing &&
               !engine.capturing && !engine.paused && device.CSimulatedWave::Write(frame, 1) == 0;
    }

    std::atomic<int> doneCount{0}, statusCount{0};
    std::atomic<bool> isComplete{false};
    std::atomic<int64_t> framesAtDone{0};
    MeasurementConfig config;
    TapDevice device;
    CEqStream filter;
    CStreamEngine engine{config, {milliseconds(1), milliseconds(1), milliseconds(5)}};
};

class Engine : public tests::WithFftTables {
  protected:
    std::string makeFile(int32_t frames) const {
        return folder.write("in.wav", tests::CountingWave(8000, 1, frames));
    }
    // Measures, or plays a file.
    static void start(EngineRun& run, bool measures) {
        ASSERT_TRUE(measures ? run.engine.StartMeasurement() : run.engine.StartPlayback());
    }

    tests::TemporaryFolder folder;
};

// The average is a whole period, whatever the delay below half of one behind the reported latency.
TEST_F(Engine, AMeasurementPlaysItsPeriodsBetweenItsSilencesAndAveragesThem) {
    for (const int32_t delay : {0, half - 1}) {
        EngineRun run({.delay = 700 + delay, .latency = 700});
        ASSERT_TRUE(run.engine.StartMeasurement());
        run.waitForDone();
        waitUntil([&] { return run.engine.waveOut.framesPlayed == 11 * period; });
        EXPECT_STREQ(run.engine.status.text(), "Analyzing ...");
        run.engine.Stop();
        EXPECT_TRUE(run.isComplete && run.isIdle());
        EXPECT_EQ(run.doneCount, 1);
        EXPECT_EQ(run.statusCount, 2);
        EXPECT_EQ(run.framesAtDone, 700 + half + (1 + 4 + 3 + 1) * period);
        const std::span<const double> noise = run.config.signal.samples();
        const Samples& left = run.device.played.at(0);
        ASSERT_EQ(left.size(), 11U * period);
        for (size_t i = 0; i < left.size(); ++i) {
            const size_t block = i / period;
            ASSERT_NEAR(left[i], block >= 2 && block < 6 ? noise[i % period] : 0.0, 1.5 * lowestBit)
                << i;
        }
        EXPECT_EQ(run.device.played.at(1), Samples(11 * period, 0.0));
        const auto average = run.engine.receiver.accumulators[0].first(period);
        for (int32_t i = 0; i < period; ++i) {
            ASSERT_NEAR(average[i], noise[(i + half - delay + period) % period], 1.5 * lowestBit)
                << i;
        }
    }
}

TEST_F(Engine, ADeviceThatDoesNotOpenLeavesNothingBehind) {
    EngineRun run(SimulatedSetup{.refusesToOpen = true});
    ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
    for (CWaveDevice* device : {static_cast<CWaveDevice*>(&run.device), {}}) {
        run.engine.SetDevice(device);
        EXPECT_FALSE(run.engine.StartMeasurement());
        EXPECT_FALSE(run.engine.StartPlayback());
        EXPECT_TRUE(run.isIdle());
    }
    run.engine.Stop();
}

TEST_F(Engine, ADeviceThatStandsStillOrDisappearsDoesNotHoldUpAStop) {
    for (const bool measures : {true, false}) {
        EngineRun stuck(SimulatedSetup{.stopsAfter = 100000});
        ASSERT_TRUE(stuck.engine.OpenFile(makeFile(endless).c_str()));
        start(stuck, measures);
        waitUntil([&] { return stuck.device.framesPlayed() >= 100000; });
        EngineRun lost(SimulatedSetup{.disappearsAfter = 100000});
        ASSERT_TRUE(lost.engine.OpenFile(makeFile(endless).c_str()));
        start(lost, measures);
        lost.waitForDone();
        EXPECT_TRUE(lost.engine.deviceLost());
        for (EngineRun* run : {&stuck, &lost}) {
            EXPECT_FALSE(run->isComplete);
            run->engine.Stop();
            EXPECT_TRUE(run->isIdle());
        }
    }
}

// Also a file that does not fill the queue on which the device starts.
TEST_F(Engine, AFilePlaysToItsEndWithSilenceBehindIt) {
    for (const int32_t frames : {256, 20480}) {
        EngineRun run;
        ASSERT_TRUE(run.engine.OpenFile(makeFile(frames).c_str()));
        ASSERT_TRUE(run.engine.StartPlayback());
        run.waitForDone();
        EXPECT_FALSE(run.isComplete);
        run.engine.Stop();
        const Samples& heard = run.device.played.at(0);
        ASSERT_GE(heard.size(), std::max(frames + 1900U, 32768U));
        EXPECT_LT(heard.size(), 34000U);
        for (int32_t i = 0; i < static_cast<int32_t>(heard.size()); ++i) {
            ASSERT_EQ(heard[i], i < frames ? (i + 1) / 32768.0 : 0.0) << i;
        }
    }
}

TEST_F(Engine, APauseHoldsTheDeviceAndASeekGoesOnElsewhere) {
    EngineRun run;
    ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
    run.engine.inputFile.RequestSeek(1.0);
    ASSERT_TRUE(run.engine.StartPlayback());
    const int stops = run.device.stops;
    run.engine.paused = true;
    waitUntil([&] { return run.device.stops > stops; });
    const int64_t held = run.engine.waveOut.framesPlayed;
    run.engine.inputFile.RequestSeek(2.0);
    EXPECT_EQ(run.engine.waveOut.framesPlayed, held);
    run.engine.paused = false;
    waitUntil([&] { return run.engine.waveOut.framesPlayed > held + 4096; });
    run.engine.paused = true;
    run.engine.Stop();
    EXPECT_TRUE(run.isIdle());
    const Samples& heard = run.device.played.at(0);
    EXPECT_EQ(heard.at(0), 8001 / 32768.0);
    EXPECT_NE(std::ranges::find(heard, 16001 / 32768.0), heard.end());
}

TEST_F(Engine, StartsAndStopsTwoHundredTimesAtAnyMoment) {
    EngineRun run;
    ASSERT_TRUE(run.engine.OpenFile(makeFile(endless).c_str()));
    for (int cycle = 0; cycle < 200; ++cycle) {
        start(run, cycle % 2 == 0);
        const int64_t frames = cycle % 4 < 2 ? 0 : cycle * 1000;
        waitUntil([&] { return run.engine.waveOut.framesPlayed >= frames; });
        run.engine.paused = cycle % 8 == 7;
        run.engine.Stop();
        ASSERT_TRUE(run.isIdle());
    }
}

TEST_F(Engine, LeavesNoWorkerThatOutlivesIt) {
    // A worker that is left uses what is gone: the sanitizers' case.
    EngineRun run(SimulatedSetup{.stopsAfter = 50000});
    ASSERT_TRUE(run.engine.StartMeasurement());
}

}  // namespace
}  // namespace tonvane
