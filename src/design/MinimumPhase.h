// A minimum-phase filter from log magnitudes, by folding the cepstrum (homomorphic construction).
#pragma once

#include "transform/SpectrumBuffer.h"

namespace tonvane {

// `shape` holds the log amplitude (nepers) of the wanted filter in the real parts of its bins;
// `work` is a second buffer of the same length N. On return the samples of `shape` are the N
// samples of the minimum-phase impulse response. Allocates nothing. An amplitude of zero (log of
// minus infinity) gives NaN.
void MinimumPhaseFromLog(SpectrumBuffer& shape, SpectrumBuffer& work);

// The same with the fast elementary functions, whose last places are others.
void FastMinimumPhaseFromLog(SpectrumBuffer& shape, SpectrumBuffer& work);

}  // namespace tonvane
