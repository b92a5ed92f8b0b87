// Convolution of an endless signal with a long impulse response, a block at a time: uniformly
// partitioned overlap-save in the frequency domain.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "transform/SpectrumBuffer.h"

namespace tonvane {

class BlockConvolver {
  public:
    static constexpr int32_t blockFrames = 1024;

    // Starts from silence. The tables of the transform must hold at least 2*blockFrames points.
    explicit BlockConvolver(std::span<const double> impulse);

    // Replaces a block of the input by the same frames of the output; nothing is delayed. The
    // output of silence is exact silence once the response has died away.
    void Process(std::span<double, blockFrames> block);

  private:
    bool takeInput(std::span<const double> block);

    SpectrumBuffer buffer_;                // the last two blocks of input, then the output
    std::vector<ComplexVector> response_;  // spectrum of each block of the impulse response
    std::vector<ComplexVector> history_;   // spectra of the input, as many
    std::vector<bool> isSilent_;           // of each spectrum in history_
    std::vector<double> previous_;         // the last block of input
    size_t newest_ = 0;
};

}  // namespace tonvane
