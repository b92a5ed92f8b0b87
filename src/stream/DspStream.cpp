#include "stream/DspStream.h"

#include <algorithm>
#include <cmath>

namespace tonvane {

void CDspStream::Flush() {
    if (inputBuffer.position != 0 && inputBuffer.position != inputBuffer.frames) {
        inputBuffer.ZeroTail();
        Pump();
    }
    if (next != nullptr) {
        next->Flush();
    }
}

bool CDspStream::Configure(const WAVEFORMATEX& format) {
    inputFormat = format;
    outputFormat = format;
    if (Open() && (next == nullptr || next->Configure(outputFormat))) {
        return true;
    }
    Close();
    return false;
}

void CDspStream::CloseChain() {
    if (next != nullptr) {
        next->CloseChain();
    }
    Close();
}

void CDspStream::Pump() {
    inputBuffer.position = 0;
    outputBuffer.position = 0;
    Process(inputBuffer.data, outputBuffer.data);
    if (next != nullptr) {
        next->Push(outputBuffer);
    }
    inputBuffer.position = 0;
    outputBuffer.position = 0;
}

void CDspStream::Push(CStreamBuffer& source) {
    while (inputBuffer.channels == source.channels) {
        const int32_t moved = MoveFrames(source, inputBuffer);
        if (moved == 0 || inputBuffer.position < inputBuffer.frames) {
            return;
        }
        Pump();
    }
}

void CDspStream::PushConstant(int32_t value, int32_t count) {
    const double sample = std::ldexp(value, 1 - outputFormat.bitsPerSample);
    while (count > 0 && outputBuffer.frames > 0) {
        const int32_t n = std::min(count, outputBuffer.frames - outputBuffer.position);
        for (int32_t i = 0; i < n; ++i, ++outputBuffer.position) {
            for (int32_t channel = 0; channel < outputBuffer.channels; ++channel) {
                const int64_t at =
                    outputBuffer.interleaved
                        ? int64_t{outputBuffer.position} * outputBuffer.channels + channel
                        : int64_t{channel} * outputBuffer.frames + outputBuffer.position;
                outputBuffer.data[at] = sample;
            }
        }
        count -= n;
        if (outputBuffer.position == outputBuffer.frames) {
            Pump();
        }
    }
}

}  // namespace tonvane
