// The sink that records to a wave file what passes; without a path it records nothing.
#pragma once

#include <cstdint>
#include <string>

#include "stream/DspStream.h"
#include "wavefile/WaveFile.h"

namespace tonvane {

class COutputWaveFileStream : public CDspStream {
  public:
    // False if the file cannot be made.
    bool Open() override;

    // Completes the file.
    void Close() override;

    // The block's own samples, whatever the file's head says of channels; rounded to nearest and
    // clipped.
    void Process(const double* in, double* out) override;

    int32_t blockFrames = 256;
    std::string path;     // empty: no recording
    WAVEFORMATEX format;  // of the file; tag 0: that of the stage's input

  private:
    CWaveFile file_;
};

}  // namespace tonvane
