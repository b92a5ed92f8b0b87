// Periodic noise: random phases over a fixed magnitude curve, flat to about 80 Hz and pink above.
#pragma once

#include "signal/ChirpSignal.h"

namespace tonvane {

class CPinkNoise : public CChirpSignal {
  public:
    // Sets highFrequency to half the sample rate and lowFrequency to 20 Hz (40 Hz below order 15).
    // The period's RMS value is 1/4.5 of full scale; the sequence is the same at every call.
    std::span<const double> generate() override;
};

}  // namespace tonvane
