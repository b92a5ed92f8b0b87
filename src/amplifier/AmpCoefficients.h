// The words of the amplifier's crossover and of its two dynamic range compressors (DRC).
#pragma once

#include <array>

#include "amplifier/BiquadWords.h"

namespace tonvane {

// What a person sets for one DRC.
struct DrcSettings {
    int32_t thresholdDb = -30;  // -48 to 12
    int32_t alphaMs = 1;        // averaging time, 1 to 5000
    int32_t attackMs = 1000;    // 1 to 5000
    int32_t releaseMs = 1000;   // 1 to 5000

    bool operator==(const DrcSettings&) const = default;
};

// The six words of one DRC, in register order.
struct DrcWords {
    int32_t alpha = 0;             // smoothing factor, a coefficient word
    int32_t omega = 0;             // 1.0 minus alpha
    int32_t attack = 0;            // a coefficient word
    int32_t release = 0;           // minus a coefficient word, its sign through all 32 bits
    int32_t attackThreshold = 0;   // linear, a threshold word
    int32_t releaseThreshold = 0;  // one step below attackThreshold
};

class CAmpCoefficients {
  public:
    // Hz; set before the others. Words that stand are not computed again.
    void SetSampleRate(int32_t rate) { sampleRate = rate; }

    // Fills both bands with a second-order Butterworth section at a frequency in Hz; used twice in
    // cascade each, they sum to an all-pass. Above half the sample rate the words mean nothing.
    void SetCrossover(int32_t hz);

    // Fills drc[index]. A time t gives the factor 1 - exp(-1/(t fs)) of a one-pole average.
    void SetDrc(const DrcSettings& settings, int32_t index);

    int32_t sampleRate = 0;
    BiquadWords lowBand = UnityBiquad;
    BiquadWords highBand = UnityBiquad;
    std::array<DrcWords, 2> drc{};
};

}  // namespace tonvane
