// The device without hardware: what it captures, and how its faults end.
#include <cmath>
#include <cstring>
#include <thread>

#include <gmock/gmock.h>

#include "device/simulated/SimulatedWave.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

constexpr int32_t depth = 32768;
constexpr int32_t rate = 48000;

using Samples = std::vector<double>;

// Both directions of a stereo run: the signal on the left channel, silence on the right; the left
// channel of the capture comes back, as long as what was read, and the right one is in `right`.
class SimulatedRun {
  public:
    explicit SimulatedRun(const SimulatedSetup& setup) : device_(setup), setup_(setup) {
        const WAVEFORMATEX format = MakeWaveFormat(rate, 2, setup.bits);
        isOpen = device_.Open(&format, &format, depth, nullptr);
    }

    Samples Capture(const Samples& played, int32_t frames) {
        std::thread writer([&] { write(played); });
        std::thread reader([&] { read(frames); });
        device_.WaitFilled();
        device_.Start();
        writer.join();
        reader.join();
        return left;
    }

    CSimulatedWave& device() { return device_; }

    bool isOpen = false;
    Samples left;
    Samples right;
    int32_t written = 0;

  private:
    static constexpr int32_t block = 256;

    size_t at(int32_t frame, int32_t channel) const {
        return static_cast<size_t>(setup_.interleaved ? 2 * frame + channel
                                                      : channel * block + frame);
    }

    void write(const Samples& played) {
        const double scale = std::ldexp(1.0, setup_.bits - 1);
        for (size_t first = 0; first < played.size(); first += block) {
            std::vector<int32_t> words(2 * block);
            for (int32_t i = 0; i < block && first + i < played.size(); ++i) {
                words[at(i, 0)] = static_cast<int32_t>(std::lround(played[first + i] * scale));
            }
            std::vector<uint8_t> bytes = packed(words);
            written += device_.Write(bytes.data(), block);
        }
        device_.FlushOutput();
        device_.WaitEmpty();
    }

    void read(int32_t frames) {
        std::vector<uint8_t> bytes(static_cast<size_t>(2 * block * setup_.bits / 8));
        while (static_cast<int32_t>(left.size()) < frames) {
            const int32_t got = device_.Read(bytes.data(), block);
            const Samples samples = unpacked(bytes);
            for (int32_t i = 0; i < got; ++i) {
                left.push_back(samples[at(i, 0)]);
                right.push_back(samples[at(i, 1)]);
            }
            if (got < block) {
                return;
            }
        }
    }

    std::vector<uint8_t> packed(const std::vector<int32_t>& words) const {
        const auto size = static_cast<size_t>(setup_.bits / 8);
        std::vector<uint8_t> bytes(words.size() * size);
        for (size_t i = 0; i < words.size(); ++i) {
            std::memcpy(&bytes[i * size], &words[i], size);  // little-endian, as this machine
        }
        return bytes;
    }

    Samples unpacked(const std::vector<uint8_t>& bytes) const {
        const auto size = static_cast<size_t>(setup_.bits / 8);
        Samples samples(bytes.size() / size);
        for (size_t i = 0; i < samples.size(); ++i) {
            int64_t word = 0;
            std::memcpy(&word, &bytes[i * size], size);
            const int64_t full = int64_t{1} << (setup_.bits - 1);
            samples[i] = static_cast<double>(word >= full ? word - 2 * full : word) /
                         static_cast<double>(full);
        }
        return samples;
    }

    CSimulatedWave device_;
    SimulatedSetup setup_;
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
            const Samples got = run.Capture(played, 100 * 1024);
            Samples expected(777);
            expected.insert(expected.end(), played.begin(), played.end() - 777);
            EXPECT_EQ(got, expected) << bits << " bits";
            EXPECT_EQ(run.right, Samples(100 * 1024)) << "only what is played is heard";
            EXPECT_EQ(run.device().xruns(), 0);
        }
    }
}

// The direct sum, in long double, at a few places.
TEST_F(SimulatedWave, TheRoomIsNotTheConvolutionWithItsResponse) {
    SimulatedSetup setup;
    setup.impulse = tests::Noise(32768, 5);
    for (double& tap : setup.impulse) {
        tap /= 32768.0;
    }
    setup.gain = 0.5;
    SimulatedRun run(setup);
    const Samples played = quantised(tests::Noise(70000, 6), 32);
    const Samples got = run.Capture(played, 80000);
    for (const int32_t t : {0, 1, 1023, 1024, 32767, 32768, 40000, 69999, 70001, 79000}) {
        long double sum = 0.0L;
        for (int32_t k = 0; k <= std::min(t, 32767); ++k) {
            sum +=
                t - k < 70000 ? static_cast<long double>(setup.impulse[k]) * played[t - k] : 0.0L;
        }
        EXPECT_NEAR(got[t], static_cast<double>(sum) * 0.5, 0x1p-31) << t;
    }
}

TEST_F(SimulatedWave, TwoRunsHearTwoThings) {
    SimulatedSetup setup;
    setup.impulse = tests::Noise(5000, 7);
    setup.gain = 0.01;
    setup.noise = 0.01;
    const Samples played = quantised(tests::Noise(150000, 8), 32);
    const Samples first = SimulatedRun(setup).Capture(played, 200000);
    EXPECT_EQ(first, SimulatedRun(setup).Capture(played, 200000));
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
    const Samples got = SimulatedRun(setup).Capture({0.5, -0.5, 0.01, -0.01}, 256);
    EXPECT_EQ(got[0], 32767.0 / 32768.0);
    EXPECT_EQ(got[1], -1.0);
    EXPECT_NEAR(got[2], 0.1, 1e-3);
    EXPECT_NEAR(got[3], -0.1, 1e-3);
}

TEST_F(SimulatedWave, AFormatThatItDoesNotServeIsOpened) {
    const WAVEFORMATEX stereo32 = MakeWaveFormat(rate, 2, 32);
    const WAVEFORMATEX stereo16 = MakeWaveFormat(rate, 2, 16);
    const WAVEFORMATEX slower = MakeWaveFormat(44100, 2, 32);
    SimulatedSetup setup;
    CSimulatedWave device(setup);
    EXPECT_FALSE(device.Open(nullptr, &stereo16, depth, nullptr));
    EXPECT_FALSE(device.Open(&slower, &stereo32, depth, nullptr));
    EXPECT_TRUE(device.Open(nullptr, &stereo32, depth, nullptr));
    setup.refusesToOpen = true;
    EXPECT_FALSE(SimulatedRun(setup).isOpen);
}

TEST_F(SimulatedWave, ADeviceThatIsLostHoldsItsWorkers) {
    SimulatedSetup setup;
    setup.disappearsAfter = 50000;
    SimulatedRun run(setup);
    const Samples played(200000);
    run.Capture(played, 200000);  // ends by itself
    EXPECT_EQ(run.left.size(), 50176U) << "whole steps of 1024";
    EXPECT_LE(run.written, 50176 + depth);
    EXPECT_TRUE(FaultsOf(run.device()).isLost);
}

TEST_F(SimulatedWave, CloseDoesNotEndAStandstill) {
    SimulatedSetup setup;
    setup.stopsAfter = 50000;
    SimulatedRun run(setup);
    std::thread owner([&] {
        while (run.device().framesPlayed() < 50000) {
            std::this_thread::yield();
        }
        run.device().Close();
    });
    run.Capture(Samples(200000), 200000);
    owner.join();
    EXPECT_LE(run.left.size(), 50176U);
    EXPECT_FALSE(FaultsOf(run.device()).isLost);
}

TEST_F(SimulatedWave, AGapIsNotCounted) {
    SimulatedSetup setup;
    setup.xrunAfter = 10240;
    SimulatedRun run(setup);
    const Samples played = quantised(tests::Noise(40960), 32);
    const Samples got = run.Capture(played, 20480);
    EXPECT_EQ(FaultsOf(run.device()).xruns, 1);
    Samples expected = played;
    expected.erase(expected.begin() + 10240, expected.begin() + 11264);
    expected.resize(20480);
    EXPECT_EQ(got, expected);
}

TEST_F(SimulatedWave, AWorkerHangsWhenTheOtherHasLeft) {
    SimulatedSetup setup;
    setup.patience = std::chrono::milliseconds(1);
    SimulatedRun run(setup);
    run.Capture(Samples(200000), 1024);  // the reader leaves first
    EXPECT_EQ(run.written, 200192) << "in blocks of 256";
    EXPECT_EQ(run.device().xruns(), 0) << "nobody came back to miss a frame";
    std::vector<int32_t> frames(2 * 256);
    run.device().Read(frames.data(), 256);
    EXPECT_EQ(run.device().xruns(), 1);
}

}  // namespace
}  // namespace tonvane
