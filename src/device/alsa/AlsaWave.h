// A device of the ALSA library: hardware, or what its configuration puts in the place of hardware,
// such as the PulseAudio and PipeWire plugins.
//
// Between the workers and the library stands one thread, which moves whole units between the rings
// and the library's buffers in both directions. It calls the library, the rings and nothing else.
// Playback starts when the first captured frames have come and been thrown away, so that a source
// that is slow to begin does not put the two directions out of step; the capture of a run begins
// there.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include "device/RingDevice.h"
#include "device/alsa/AlsaPcm.h"

namespace tonvane {

class CAlsaWave : public UnitDevice {
  public:
    // The name of a PCM of the ALSA configuration, used for both directions.
    explicit CAlsaWave(std::string pcm = "default") : pcm_(std::move(pcm)) {}
    ~CAlsaWave() override;

    bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
              void* notify) override;
    void Close() override;
    bool Start() override;

    // Returns at once; the thread halts soon. Frames that the library holds are played after the
    // next Start.
    void Stop() override;

  private:
    enum class Order { halt, run, quit };

    static void hurry();
    void serve();
    void run();
    bool startCapture();
    bool startPlay();
    bool waitForPeriod();
    bool moveCaptured();
    bool movePlayed();
    bool feedPlay(int32_t room);
    void completePlayed();
    void haltPlay();
    bool hadGap(AlsaPcm& pcm, GapCount& gaps, int32_t error);
    void give(Order order);
    [[nodiscard]] bool isRunning() const { return order_.load() == Order::run; }

    std::string pcm_;
    AlsaPcm capturePcm_;
    AlsaPcm playPcm_;
    std::atomic<Order> order_{Order::quit};  // to quit: there is no thread, or soon none
    std::thread thread_;

    // The thread's own.
    std::vector<std::byte> unheard_;  // a unit for captured frames that nobody has room for
    std::vector<std::byte> silence_;  // a unit of zeros
    int32_t captureBytes_ = 0;        // of a captured frame
    int32_t playBytes_ = 0;           // of a played frame
    int32_t captured_ = 0;            // frames in the unit that is being filled
    int32_t written_ = 0;             // frames given to the library, from the start of the oldest
                                      // unit that is not completed
    bool hasMoved_ = false;           // frames in this round, in either direction
    int32_t silenceBehind_ = 0;       // frames of silence written since
};

}  // namespace tonvane
