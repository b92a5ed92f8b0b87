#include "stream/OutputWaveFileStream.h"

namespace tonvane {

bool COutputWaveFileStream::Open() {
    if (format.formatTag == 0) {
        format = inputFormat;
    }
    if (!path.empty() &&
        !file_.Create(path, format.sampleRate, format.bitsPerSample, format.channels)) {
        return false;
    }
    inputBuffer.Allocate(inputFormat.channels, blockFrames, true);
    return true;
}

void COutputWaveFileStream::Close() {
    file_.Close();
}

void COutputWaveFileStream::Process(const double* in, double* /*out*/) {
    if (file_.isOpen()) {
        file_.Write({in, inputBuffer.samples().size()});
    }
}

}  // namespace tonvane
