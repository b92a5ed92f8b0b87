// An engine with a device for a test, and short waits.
#pragma once

#include <thread>

#include "stream/EqStream.h"
#include "stream/StreamEngine.h"
#include "stream/TapDevice.h"

namespace tonvane::tests {

struct RecordingNotify : StreamNotify {
    void postCaptureDone(bool complete) override {
        framesAtDone = engine->waveIn.framesCaptured.load();
        isComplete = complete;
        ++doneCount;
    }
    void postStatus() override { ++statusCount; }
    void showError(const std::string& /*text*/) override {}

    CStreamEngine* engine = nullptr;
    std::atomic<int> doneCount{0}, statusCount{0};
    std::atomic<bool> isComplete{false};
    std::atomic<int64_t> framesAtDone{0};
};

// Waits for what another thread does; a test that waits in vain ends by the runner's limit.
template <typename Condition>
void WaitUntil(Condition condition) {
    while (!condition()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

struct EngineRun {
    explicit EngineRun(const SimulatedSetup& setup = {}) : device(setup) {
        config.sampleRate = 48000;
        config.repeats = 4;
        config.signal.sampleRate = 48000;
        config.signal.setOrder(15);
        config.signal.generate();
        notify.engine = &engine;
        engine.status.notifyWindow = &notify;
        engine.SetDevice(&device);
        engine.AttachFilter(&filter);
    }
    void waitForDone() const {
        WaitUntil([this] { return notify.doneCount > 0; });
    }
    [[nodiscard]] bool isIdle() const {
        return engine.captureThread == CStreamEngine::noThread &&
               engine.outputThread == CStreamEngine::noThread && !engine.playing &&
               !engine.capturing && !engine.paused && !device.isOpen;
    }

    static constexpr std::chrono::milliseconds shortly{1};
    MeasurementConfig config;
    TapDevice device;
    RecordingNotify notify;
    CEqStream filter;
    CStreamEngine engine{config, {shortly, shortly, std::chrono::milliseconds(50)}};
};

}  // namespace tonvane::tests
