#include "device/winmm/WaveInOutWave.h"

namespace tonvane {

CWaveInOutWave::~CWaveInOutWave() {
    play_.Close();
    capture_.Close();
}

bool CWaveInOutWave::Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
                          void* /*notify*/) {
    lost_ = false;
    refusal_.clear();
    if (capture != nullptr) {
        refusal_ = capture_.Open(*capture, frames);
    }
    if (play != nullptr && refusal_.empty()) {
        refusal_ = play_.Open(*play, frames);
    }
    if (!refusal_.empty()) {
        Close();
    }
    return refusal_.empty();
}

void CWaveInOutWave::Close() {
    // Both workers first: the one of the playback must not wait for the capture to be closed.
    capture_.ring.Close();
    play_.ring.Close();
    capture_.Close();
    play_.Close();
}

bool CWaveInOutWave::Start() {
    capture_.Start();
    play_.Start();
    return true;
}

void CWaveInOutWave::Stop() {
    capture_.Stop();
    play_.Stop();
}

int CWaveInOutWave::Read(void* data, int frames) {
    capture_.Settle();
    return capture_.ring.Read(data, frames);
}

int CWaveInOutWave::Write(const void* data, int frames) {
    play_.Settle();
    return play_.ring.Write(data, frames);
}

void CWaveInOutWave::lose() {
    lost_ = true;
    capture_.ring.Close();
    play_.ring.Close();
}

}  // namespace tonvane
