// The device without hardware: what it captures, and how its faults end.
#include <cmath>

#include <gmock/gmock.h>

#include "device/DeviceLoop.h"
#include "device/simulated/SimulatedWave.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using Samples = std::vector<double>;

struct SimulatedRun : CSimulatedWave, tests::DeviceLoop {
    explicit SimulatedRun(const SimulatedSetup& setup)
        : CSimulatedWave(setup), DeviceLoop(static_cast<CWaveDevice&>(*this)) {
        isOpen = DeviceLoop::Open();
    }
    bool isOpen = false;
};

class SimulatedWave : public tests::WithFftTables {};

Samples quantised(Samples samples, int32_t bits) {
    const double scale = std::ldexp(1.0, bits - 1);
    for (double& sample : samples) {
        sample = std::floor(sample * scale + 0.5) / scale;
    }
    return samples;
}

TEST_F(SimulatedWave, AWireChangesAFrameInAnyFormat) {
    Samples played = quantised(tests::Noise(100 * 1024), 16);
    for (const bool interleaved : {true, false}) {
        for (const int32_t bits : {16, 24, 32}) {
            SimulatedSetup setup;
            setup.bits = bits;
            setup.interleaved = interleaved;
            setup.delay = 777;
            SimulatedRun run(setup);
            const Samples got = run.Run(played, 100 * 1024);
            Samples expected(777);
            expected.insert(expected.end(), played.begin(), played.end() - 777);
            EXPECT_EQ(got, expected) << bits << " bits";
            EXPECT_EQ(run.right, Samples(100 * 1024)) << "only what is played is heard";
            EXPECT_EQ(run.xruns(), 0);
        }
    }
}

TEST_F(SimulatedWave, TwoRunsHearTwoThings) {
    SimulatedSetup setup;
    setup.impulse = tests::Noise(5000, 7);
    setup.gain = 0.01;
    setup.noise = 0.01;
    const Samples played = quantised(tests::Noise(150000, 8), 32);
    const Samples first = SimulatedRun(setup).Run(played, 200000);
    EXPECT_EQ(first, SimulatedRun(setup).Run(played, 200000));
    double power = 0.0;
    for (int32_t t = 160000; t < 200000; ++t) {
        power += first[t] * first[t] / 40000.0;
    }
    EXPECT_NEAR(std::sqrt(power), 0.01, 0.0002) << "the noise alone, behind the sound";
}

TEST_F(SimulatedWave, ALoudCaptureWrapsAround) {
    SimulatedSetup setup;
    setup.gain = 10.0;
    setup.bits = 16;
    const Samples got = SimulatedRun(setup).Run({0.5, -0.5, 0.01, -0.01}, 256);
    EXPECT_EQ(got[0], 32767.0 / 32768.0);
    EXPECT_EQ(got[1], -1.0);
    EXPECT_NEAR(got[2], 0.1, 1e-3);
    EXPECT_NEAR(got[3], -0.1, 1e-3);
}

TEST_F(SimulatedWave, AGapIsNotCounted) {
    SimulatedSetup setup;
    setup.xrunAfter = 10240;
    SimulatedRun run(setup);
    const Samples played = quantised(tests::Noise(40960), 32);
    const Samples got = run.Run(played, 20480);
    EXPECT_EQ(FaultsOf(run).xruns, 1);
    Samples expected = played;
    expected.erase(expected.begin() + 10240, expected.begin() + 11264);
    expected.resize(20480);
    EXPECT_EQ(got, expected);
}

TEST_F(SimulatedWave, AWorkerHangsWhenTheOtherHasLeft) {
    SimulatedSetup setup;
    setup.patience = std::chrono::milliseconds(1);
    SimulatedRun run(setup);
    run.Run(Samples(200000), 1024);  // the reader leaves first
    EXPECT_EQ(run.written, 200192) << "in blocks of 256";
    EXPECT_EQ(run.xruns(), 0) << "nobody came back to miss a frame";
    std::vector<int32_t> frames(2 * 256);
    run.Read(frames.data(), 256);
    EXPECT_EQ(run.xruns(), 1);
}

}  // namespace
}  // namespace tonvane
