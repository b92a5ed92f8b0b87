// The benchmarks' own input, so that they depend on no file: the same bits on every machine.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "analysis/ResponseAnalyzer.h"
#include "design/EqDesigner.h"
#include "design/IirFitter.h"
#include "design/TargetRecord.h"

namespace tonvane::bench {

constexpr int32_t sampleRate = 48000;  // Hz
constexpr int32_t tapCount = 256;
constexpr int32_t sectionCount = 7;
constexpr double gainClampDb = -6.0;

// The impulse response of a small speaker: 32768 samples with the onset at sample 160, a sum of
// damped resonances between 110 Hz and 14 kHz.
std::vector<double> SyntheticResponse();

// A gently falling target.
extern const TargetRecord tiltedTarget;

// One design from an analysed response to the filter words.
void DesignWhole(const ResponseAnalyzer& analyzer, EqDesigner& designer, IirFitter& fitter);

// From a moved target to the words, the response being prepared.
void DesignForTarget(const TargetRecord& target, EqDesigner& designer, IirFitter& fitter);

// Target, preparation and level search, the part of it that ends with the taps.
void DesignTaps(const ResponseAnalyzer& analyzer, EqDesigner& designer);

}  // namespace tonvane::bench
