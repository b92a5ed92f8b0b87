#include "device/winmm/WaveInOutWave.h"

namespace tonvane {

CWaveInOutWave::~CWaveInOutWave() {
    playPipe_.Close();
    capturePipe_.Close();
}

bool CWaveInOutWave::Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
                          void* /*notify*/) {
    faults_.Reset();
    if (capture != nullptr) {
        faults_.refusal = capturePipe_.Open(*capture, frames);
    }
    if (play != nullptr && faults_.refusal.empty()) {
        faults_.refusal = playPipe_.Open(*play, frames);
    }
    if (!faults_.refusal.empty()) {
        Close();
    }
    return faults_.refusal.empty();
}

void CWaveInOutWave::Close() {
    // Both workers first: the one of the playback must not wait for the capture to be closed.
    closeRings();
    capturePipe_.Close();
    playPipe_.Close();
}

bool CWaveInOutWave::Start() {
    capturePipe_.Start();
    playPipe_.Start();
    return true;
}

void CWaveInOutWave::Stop() {
    capturePipe_.Stop();
    playPipe_.Stop();
}

}  // namespace tonvane
