#include "stream/InputWaveFileStream.h"

#include <algorithm>

namespace tonvane {

namespace {

int32_t frameAt(double seconds, int32_t sampleRate) {
    constexpr double last = 0x7fffffff;
    return static_cast<int32_t>(std::clamp(seconds * sampleRate, 0.0, last));
}

}  // namespace

void CInputWaveFileStream::clearPosition() {
    currentFrame = 0;
    seekTarget = -1;
    seekServed = 0;
    seekRequested = 0;
}

bool CInputWaveFileStream::Load(const char* newPath) {
    const std::string wanted = newPath == nullptr ? "" : newPath;
    file_.takesFloats = takesFloats;
    path.clear();
    int32_t rate = 0;
    int32_t bits = 0;
    int32_t channels = 0;
    if (wanted.empty() || !file_.Open(wanted, rate, bits, channels)) {
        format.formatTag = 1;
        format.sampleRate = 0;
        format.bytesPerSecond = 0;
        format.blockAlign = 0;
        format.extraSize = 0;
        return false;
    }
    path = wanted;
    format = MakeWaveFormat(rate, channels, bits);
    totalFrames = file_.FramesLeft();
    file_.Close();
    clearPosition();
    return true;
}

bool CInputWaveFileStream::Reopen() {
    int32_t rate = 0;
    int32_t bits = 0;
    int32_t channels = 0;
    if (path.empty() || !file_.Open(path, rate, bits, channels)) {
        if (StreamNotify* window = status_.notifyWindow) {
            window->showError("Failed to open \"" + path + "\"");
        }
        return false;
    }
    totalFrames = file_.FramesLeft();
    return Configure(MakeWaveFormat(rate, channels, bits));
}

bool CInputWaveFileStream::Open() {
    return outputBuffer.Allocate(outputFormat.channels, blockFrames, true);
}

void CInputWaveFileStream::Close() {
    file_.Close();
    clearPosition();
}

double CInputWaveFileStream::DurationSeconds() const {
    const int32_t frames = totalFrames;
    return frames > 0 && format.sampleRate > 0 ? static_cast<double>(frames) / format.sampleRate
                                               : 0.0;
}

double CInputWaveFileStream::PositionSeconds() const {
    if (format.sampleRate <= 0) {
        return 0.0;
    }
    const int32_t frame = seekServed < seekRequested ? seekTarget : currentFrame;
    return static_cast<double>(frame) / format.sampleRate;
}

void CInputWaveFileStream::RequestSeek(double seconds) {
    seekTarget = frameAt(seconds, format.sampleRate);
    ++seekRequested;
}

void CInputWaveFileStream::seek(int32_t frame) {
    currentFrame = frame;
    file_.SeekFrame(frame);
}

bool CInputWaveFileStream::ReadBlock() {
    CStreamBuffer& block = outputBuffer;
    bool ended = false;
    while (block.position < block.frames && !ended) {
        const int32_t requested = seekRequested;
        if (seekServed < requested) {
            seekServed = requested;
            seek(seekTarget);
        }
        int32_t left = file_.FramesLeft();
        if (left <= 0 && !once) {
            seek(0);
            left = file_.FramesLeft();
        }
        const int32_t n = std::min(block.frames - block.position, left);
        if (n > 0) {
            file_.Read(block.data + int64_t{block.position} * block.channels, n);
            block.position += n;
            currentFrame += n;
        } else {
            block.ZeroTail();
            ended = true;
        }
    }
    Pump();
    return file_.FramesLeft() > 0;
}

}  // namespace tonvane
