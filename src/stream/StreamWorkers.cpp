// What the workers of the engine do.
#include <algorithm>

#include "stream/StreamEngine.h"

namespace tonvane {

namespace {

// What a stage that starts half a period late throws away.
constexpr int32_t halfPeriod = testBlockFrames / 2;

}  // namespace

void CStreamEngine::captureWork() {
    latency = device->Latency();
    waveIn.Discard(latency);
    waveIn.Discard(halfPeriod);
    bool delivering = true;
    while (capturing && delivering && receiver.state != teststate::done) {
        delivering = waveIn.ReadBlock();
    }
    if (StreamNotify* window = status.notifyWindow) {
        window->postCaptureDone(receiver.state == teststate::done);
    }
    // The device is kept from overflowing until the owner has reacted.
    while (capturing) {
        if (!waveIn.ReadBlock()) {
            std::this_thread::sleep_for(intervals_.worker);
        }
    }
    waveIn.CloseChain();
}

void CStreamEngine::senderWork() {
    sender.Pump();
    bool more = true;
    while (more && playing) {
        more = sender.Step();
    }
    if (!more && playing) {
        const int32_t blocks = (drainFrames + testBlockFrames - 1) / testBlockFrames;
        for (int32_t i = 0; i < blocks; ++i) {
            sender.Pump();
        }
        sender.Flush();
        device->FlushOutput();
        device->WaitEmpty();
    }
    while (captureThread != noThread) {
        std::this_thread::sleep_for(intervals_.worker);
    }
    sender.CloseChain();
}

// Holds a pause; whether to go on playing.
bool CStreamEngine::waitWhilePaused() {
    if (paused && playing) {
        device->Stop();
        while (paused && playing) {
            std::this_thread::sleep_for(intervals_.worker);
        }
        if (playing) {
            device->Start();
        }
    }
    return playing;
}

// A quarter second of silence takes the end of the file through the stages; a file that is shorter
// than the device's queue needs more, since the device starts on a full queue.
void CStreamEngine::drainFile() {
    const auto missing = static_cast<int32_t>(
        std::max<int64_t>(0, drainFrames + inputFile.blockFrames - waveOut.framesPlayed));
    inputFile.PushConstant(0, std::max(inputFile.outputFormat.sampleRate / 4, missing));
    inputFile.Flush();
    device->FlushOutput();
    device->WaitEmpty();
}

void CStreamEngine::fileWork() {
    bool more = true;
    do {
        more = inputFile.ReadBlock();
    } while (more && waitWhilePaused() && !waveOut.lost);
    if (!playing) {
        device->Stop();
    }
    if (!paused && playing && !waveOut.lost) {
        drainFile();
    }
    if (playing) {
        if (StreamNotify* window = status.notifyWindow) {
            window->postCaptureDone(false);
        }
    }
    device->Stop();
    inputFile.CloseChain();
}

}  // namespace tonvane
