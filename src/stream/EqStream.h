// The place in the path to the device where a filter would go; it passes audio on unchanged, in
// blocks of 1024 frames. The designed filter reaches the listener through the amplifier alone.
#pragma once

#include "stream/DspStream.h"

namespace tonvane {

class CEqStream : public CDspStream {
  public:
    bool Open() override;
    void Process(const double* in, double* out) override;

    int32_t blockFrames = 1024;
};

}  // namespace tonvane
