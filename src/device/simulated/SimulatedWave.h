// A device without hardware: what is played comes back through a given impulse response.
//
// It has no clock. Time passes in steps of 1024 frames on the threads of the callers, whenever both
// directions can take a step: the play queue holds it (or has been flushed, and silence is played)
// and the capture queue has room for it. So a run is as fast as its callers, and what is captured
// depends on what was played alone, sample for sample. Only when one worker waits and the other
// does not come for `patience` does time go on without it, as on hardware: then silence is played
// or a step of the capture is lost, which xruns() tells if that worker comes back.
//
// Captured channel c hears played channel c; one that is not played is silent.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <random>
#include <span>
#include <vector>

#include "device/DeviceFaults.h"
#include "device/WaveDevice.h"
#include "device/simulated/BlockConvolver.h"

namespace tonvane {

struct SimulatedSetup {
    // No frame: the event does not happen.
    static constexpr int64_t never = INT64_MAX;

    // The way from the loudspeaker to the microphone. Samples at full scale 1.0; what goes beyond
    // full scale is clipped in the capture, so that a high gain makes a clipped one and a gain of 0
    // a silent one.
    std::vector<double> impulse{1.0};
    int32_t delay = 0;           // frames, beside those of the impulse response
    double gain = 1.0;           // amplitude
    double noise = 0.0;          // rms of white noise in each captured channel, full scale 1.0
    uint32_t noiseSeed = 1;      //
    int32_t latency = 0;         // what Latency says; `delay` does not follow it
    int32_t bits = 32;           // 16, 24 or 32
    bool interleaved = false;    //
    bool refusesToOpen = false;  //

    // Frames since the first Start after Open, rounded up to whole steps.
    int64_t stopsAfter = never;  // time stands still: Read and Write wait until Close
    int64_t disappearsAfter =
        never;  // the device is lost: Write returns short, Read after the last frame
    int64_t xrunAfter = never;            // a step of the capture is lost
    int64_t slipsAfter = never;           // the same, and it is not counted as a gap
    int64_t changesLatencyAfter = never;  // Latency says a step more

    std::chrono::milliseconds patience{1000};
};

// The tables of the transform must hold at least 2048 points before Open.
class CSimulatedWave : public CWaveDevice {
  public:
    explicit CSimulatedWave(SimulatedSetup setup);
    ~CSimulatedWave() override;

    // Refuses a format of other bits than the setup's, and two rates.
    bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
              void* notify) override;
    void Close() override;
    bool Start() override;
    void Stop() override;
    int Read(void* data, int frames) override;
    int Write(const void* data, int frames) override;
    void FlushOutput() override;
    void WaitFilled() override;
    void WaitEmpty() override;
    bool IsInterleaved() override { return setup_.interleaved; }
    int BitsPerSample() override { return setup_.bits; }
    int Latency() override;

    [[nodiscard]] int32_t xruns() const override { return faults_.xruns(); }
    [[nodiscard]] bool isLost() const override { return faults_.isLost; }
    [[nodiscard]] std::string refusal() const override { return faults_.refusal; }

    // Frames that have gone by since Open.
    [[nodiscard]] int64_t framesPlayed() const;

  private:
    // A queue of frames; the channels of a frame lie side by side. At full scale 1.0.
    struct Queue {
        std::vector<double> samples;
        int32_t channels = 0;  // 0: the direction is not open
        int32_t depth = 0;     // frames
        int64_t put = 0;
        int64_t taken = 0;

        [[nodiscard]] bool isOpen() const { return channels > 0; }
        [[nodiscard]] int32_t held() const { return static_cast<int32_t>(put - taken); }
        [[nodiscard]] int32_t room() const { return depth - held(); }
        double* frame(int64_t count) { return samples.data() + count % depth * channels; }
        void open(const WAVEFORMATEX* format, int32_t frames);
    };

    using Lock = std::unique_lock<std::mutex>;

    [[nodiscard]] std::string refusalOf(const WAVEFORMATEX* capture, const WAVEFORMATEX* play,
                                        int frames) const;
    [[nodiscard]] bool isUp() const { return open_ && !faults_.isLost; }
    [[nodiscard]] bool timeFlows() const;
    [[nodiscard]] bool canStep() const;
    void advance();
    void step();
    void takePlayed(int32_t channel, std::span<double> block);
    void putCaptured(int32_t channel, std::span<const double> block, bool kept);
    bool waitForOther(Lock& lock);
    [[nodiscard]] size_t byteIndex(int32_t frame, int32_t channel, int32_t frames,
                                   int32_t channels) const;

    const SimulatedSetup setup_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Queue play_;
    Queue capture_;
    std::vector<BlockConvolver> paths_;        // one for each captured channel
    std::vector<std::vector<double>> delays_;  // the frames on the way, for each captured channel
    std::minstd_rand noise_;
    int64_t now_ = 0;  // frames since Open
    bool open_ = false;
    bool running_ = false;
    bool flushed_ = false;
    bool withoutWriter_ = false;  // waited for in vain
    bool withoutReader_ = false;
    bool hadXrun_ = false;
    bool hadSlip_ = false;
    DeviceFaults faults_;
};

}  // namespace tonvane
