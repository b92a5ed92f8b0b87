// The engine: owns the stages, wires them, and runs the workers that move audio through them.
//
//   waveIn -> receiver -> captureFile
//   inputFile or sender -> attached filter -> waveOut -> playbackFile
//
// All operations run on one thread, the owner's. Workers are stopped by clearing `playing` and
// `capturing` and waiting; there is no lock between the threads. A device that no longer moves data
// does not hold a stop up for ever: it is closed after a while, which frees the workers.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#include "device/WaveDevice.h"
#include "signal/MeasurementConfig.h"
#include "stream/InputWaveFileStream.h"
#include "stream/OutputWaveFileStream.h"
#include "stream/StreamNotify.h"
#include "stream/TestSignalReceiverStream.h"
#include "stream/TestSignalSenderStream.h"
#include "stream/WaveInStream.h"
#include "stream/WaveOutStream.h"

namespace tonvane {

class CStreamEngine {
  public:
    // A worker's mark while it runs, and this when it is gone.
    using ThreadHandle = std::atomic<std::intptr_t>;
    static constexpr std::intptr_t noThread = -1;

    static constexpr int32_t queueFrames = 32768;  // of the device, per direction

    // Pauses between looks at what another thread does, and how long a stop waits for the workers
    // before it closes the device under them.
    struct Intervals {
        std::chrono::milliseconds owner{100};
        std::chrono::milliseconds worker{10};
        std::chrono::milliseconds giveUp{2000};
    };

    // The configuration outlives the engine.
    explicit CStreamEngine(MeasurementConfig& config) : CStreamEngine(config, Intervals()) {}
    CStreamEngine(MeasurementConfig& config, const Intervals& intervals);
    CStreamEngine(const CStreamEngine&) = delete;
    CStreamEngine& operator=(const CStreamEngine&) = delete;

    // Stops; no thread is left. A device that is still set must still exist.
    ~CStreamEngine();

    // Nothing runs. The device outlives its use here; null for none. Always true.
    bool SetDevice(CWaveDevice* newDevice);

    // Puts a chain of filter stages into the path from both sources to the device; null for none.
    void AttachFilter(CDspStream* head);

    // Takes the chains apart, at the end of the program: no run is possible after it.
    void DetachFilter();

    // Stops, and makes a wave file the one to play. False if it cannot be used.
    bool OpenFile(const char* path);

    // Stop what runs, open the device and start the workers. False, with nothing running and the
    // device closed, when that fails. The test signal of a measurement has been generated.
    bool StartPlayback();
    bool StartMeasurement();

    // Ends what runs and closes the device, which stays set.
    void Stop();

    // Whether the device has stopped serving a run by itself.
    [[nodiscard]] bool deviceLost() const { return waveOut.lost || waveIn.lost; }

    MeasurementConfig& measurement;
    StreamStatus status;  // its notifyWindow is told of a run's end

    std::atomic<bool> playing{false};
    std::atomic<bool> capturing{false};
    std::atomic<bool> paused{false};
    ThreadHandle captureThread{noThread};
    ThreadHandle outputThread{noThread};
    CWaveDevice* device = nullptr;
    int32_t latency = 0;      // frames, what the device said of it at the start of a capture
    int32_t drainFrames = 0;  // silence behind a run that pushes the rest through the device
    WAVEFORMATEX captureFormat;
    WAVEFORMATEX playFormat;

    CWaveInStream waveIn;
    CTestSignalReceiverStream receiver;
    COutputWaveFileStream captureFile;
    CInputWaveFileStream inputFile;
    CTestSignalSenderStream sender;
    CWaveOutStream waveOut;
    COutputWaveFileStream playbackFile;

  private:
    void endRun();
    void waitForWorkers();
    void closeDevice();
    bool openMeasurement();
    bool openPlayback();
    void startDevice();
    bool startWorker(std::thread& thread, ThreadHandle& handle, void (CStreamEngine::*work)());

    void captureWork();
    void senderWork();
    void fileWork();
    bool waitWhilePaused();
    void drainFile();

    Intervals intervals_;
    std::thread captureWorker_;
    std::thread outputWorker_;
    std::intptr_t lastHandle_ = 0;
};

}  // namespace tonvane
