#include "stream/StreamEngine.h"

#include <system_error>

#include "platform/Threads.h"

namespace tonvane {

CStreamEngine::CStreamEngine(MeasurementConfig& config, const Intervals& intervals)
    : measurement(config),
      receiver(config, status),
      inputFile(status),
      sender(config, status),
      intervals_(intervals) {
    waveIn.next = &receiver;
    receiver.next = &captureFile;
    sender.next = &waveOut;
    waveOut.next = &playbackFile;
}

CStreamEngine::~CStreamEngine() {
    Stop();
}

bool CStreamEngine::SetDevice(CWaveDevice* newDevice) {
    device = newDevice;
    waveIn.device = newDevice;
    waveOut.device = newDevice;
    return true;
}

void CStreamEngine::AttachFilter(CDspStream* head) {
    inputFile.next = head;
    CDspStream* last = &inputFile;
    while (last->next != nullptr && last->next != &waveOut) {
        last = last->next;
    }
    last->next = &waveOut;
    sender.next = inputFile.next;
}

void CStreamEngine::DetachFilter() {
    for (CDspStream* stage = inputFile.next; stage != nullptr; stage = stage->next) {
        if (stage->next == &waveOut) {
            stage->next = nullptr;
        }
    }
    inputFile.next = nullptr;
    sender.next = nullptr;
    waveIn.next = nullptr;
    receiver.next = nullptr;
}

// Workers look at the flags between two blocks, and a block waits for the device for less than a
// second while it runs; a device that keeps them longer has stopped.
void CStreamEngine::waitForWorkers() {
    const auto start = std::chrono::steady_clock::now();
    bool closed = false;
    while (captureThread != noThread || outputThread != noThread) {
        if (!closed && device != nullptr &&
            std::chrono::steady_clock::now() - start >= intervals_.giveUp) {
            device->Close();
            closed = true;
        }
        std::this_thread::sleep_for(intervals_.owner);
    }
    for (std::thread* thread : {&captureWorker_, &outputWorker_}) {
        if (thread->joinable()) {
            thread->join();
        }
    }
}

void CStreamEngine::closeDevice() {
    if (device != nullptr) {
        device->Stop();
        device->Close();
    }
}

void CStreamEngine::endRun() {
    playing = false;
    capturing = false;
    waitForWorkers();
    closeDevice();
    paused = false;
}

void CStreamEngine::Stop() {
    endRun();
}

bool CStreamEngine::OpenFile(const char* path) {
    Stop();
    const bool loaded = inputFile.Load(path);
    playFormat = inputFile.format;
    return loaded;
}

// The handle is set ahead of the thread, so that a worker that ends at once is not overwritten.
bool CStreamEngine::startWorker(std::thread& thread, ThreadHandle& handle,
                                void (CStreamEngine::*work)()) {
    handle = ++lastHandle_;
    try {
        thread = std::thread([this, &handle, work] {
            RaiseThreadPriority();
            (this->*work)();
            handle = noThread;
        });
    } catch (const std::system_error&) {
        handle = noThread;
        return false;
    }
    return true;
}

// The queue is full before the device starts.
void CStreamEngine::startDevice() {
    device->WaitFilled();
    device->Start();
    paused = false;
}

bool CStreamEngine::openMeasurement() {
    if (device == nullptr || !sender.Configure()) {
        return false;
    }
    playFormat = waveOut.inputFormat;
    captureFormat = MakeWaveFormat(measurement.sampleRate, sender.outputFormat.channels,
                                   device->BitsPerSample());
    drainFrames = queueFrames;
    return waveIn.Configure(captureFormat) &&
           device->Open(&captureFormat, &playFormat, queueFrames, status.notifyWindow);
}

bool CStreamEngine::StartMeasurement() {
    endRun();
    if (!openMeasurement()) {
        waveIn.CloseChain();
        sender.CloseChain();
        return false;
    }
    playing = true;
    capturing = true;
    if (startWorker(captureWorker_, captureThread, &CStreamEngine::captureWork) &&
        startWorker(outputWorker_, outputThread, &CStreamEngine::senderWork)) {
        startDevice();
        return true;
    }
    device->Close();  // frees a worker that waits for data
    endRun();
    sender.CloseChain();
    return false;
}

bool CStreamEngine::openPlayback() {
    if (device == nullptr || !inputFile.Reopen()) {
        return false;
    }
    playFormat = waveOut.inputFormat;
    drainFrames = queueFrames;
    return device->Open(nullptr, &playFormat, queueFrames, status.notifyWindow);
}

bool CStreamEngine::StartPlayback() {
    endRun();
    if (!openPlayback()) {
        inputFile.CloseChain();
        return false;
    }
    playing = true;
    if (startWorker(outputWorker_, outputThread, &CStreamEngine::fileWork)) {
        startDevice();
        return true;
    }
    endRun();
    inputFile.CloseChain();
    return false;
}

}  // namespace tonvane
