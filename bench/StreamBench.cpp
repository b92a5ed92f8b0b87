// The stream engine on a device that takes no time: how many times faster than the sound it is.
// Each run is one of the whole engine, with its threads; "realtime" is the multiple at 48 kHz in
// stereo.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include "stream/EqStream.h"
#include "stream/StreamEngine.h"

namespace tonvane::bench {
namespace {

constexpr int32_t rate = 48000;
constexpr std::chrono::milliseconds lookInterval{1};

struct InstantDevice : CWaveDevice {
    bool Open(const WAVEFORMATEX* /*capture*/, const WAVEFORMATEX* play, int /*frames*/,
              void* /*notify*/) override {
        frameBytes = static_cast<size_t>(play->blockAlign);
        return true;
    }
    void Close() override {}
    bool Start() override { return true; }
    void Stop() override {}
    int Read(void* data, int frames) override {
        std::memset(data, 1, static_cast<size_t>(frames) * frameBytes);
        return frames;
    }
    int Write(const void* data, int frames) override {
        benchmark::DoNotOptimize(data);
        return frames;
    }
    void FlushOutput() override {}
    void WaitFilled() override {}
    void WaitEmpty() override {}
    bool IsInterleaved() override { return true; }
    int BitsPerSample() override { return 16; }
    int Latency() override { return 0; }
    [[nodiscard]] int32_t xruns() const override { return 0; }
    [[nodiscard]] bool isLost() const override { return false; }
    [[nodiscard]] std::string refusal() const override { return {}; }

    size_t frameBytes = 0;
};

struct DoneNotify : StreamNotify {
    void postCaptureDone(bool /*complete*/) override { isDone = true; }
    void postStatus() override {}
    void showError(const std::string& text) override { std::fprintf(stderr, "%s\n", text.c_str()); }
    std::atomic<bool> isDone{false};
};

struct Run {
    Run() : engine(config, {lookInterval, lookInterval}) {
        config.sampleRate = rate;
        config.repeats = 4;
        config.signal.sampleRate = rate;
        config.signal.setOrder(15);
        config.signal.generate();
        engine.status.notifyWindow = &notify;
        engine.SetDevice(&device);
        engine.AttachFilter(&filter);
    }

    // Seconds from the start to the word that the run has ended.
    double time(bool (CStreamEngine::*start)()) {
        notify.isDone = false;
        const auto begin = std::chrono::steady_clock::now();
        (engine.*start)();
        while (!notify.isDone) {
            std::this_thread::yield();
        }
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        engine.Stop();
        return seconds.count();
    }

    MeasurementConfig config;
    InstantDevice device;
    DoneNotify notify;
    CEqStream filter;
    CStreamEngine engine;
};

void setRealtime(benchmark::State& state, int64_t frames) {
    state.counters["realtime"] = benchmark::Counter(static_cast<double>(frames) / rate,
                                                    benchmark::Counter::kIsIterationInvariantRate);
}

// Sixty seconds from a 16-bit file to the device.
void Playback(benchmark::State& state) {
    constexpr int32_t frames = 60 * rate / 256 * 256;
    const std::string path = "tonvane-bench.wav";
    CWaveFile file;
    file.Create(path, rate, 16, 2);
    const std::vector<double> samples(2 * size_t{frames}, 0.25);
    file.Write(samples);
    file.Close();
    Run run;
    run.engine.OpenFile(path.c_str());
    for (auto _ : state) {
        state.SetIterationTime(run.time(&CStreamEngine::StartPlayback));
    }
    setRealtime(state, frames);
    std::remove(path.c_str());
}

// The capture of a whole measurement, with its playback beside it.
void Capture(benchmark::State& state) {
    Run run;
    for (auto _ : state) {
        state.SetIterationTime(run.time(&CStreamEngine::StartMeasurement));
    }
    const int32_t blocks = run.config.repeats + testPauseBlocks + 2;
    setRealtime(state, int64_t{testBlockFrames} * blocks + testBlockFrames / 2);
}

BENCHMARK(Playback)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Capture)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tonvane::bench
