// What a person has switched on and set on the amplifier, and the words that follow from it.
#pragma once

#include "amplifier/AmpCoefficients.h"

namespace tonvane {

struct AmplifierSettings {
    // Everything off and at its default, with the words for a sample rate in Hz. They go on being
    // computed for this rate until the next call.
    void reset(int32_t sampleRate);

    void setCrossover(int32_t hz);
    void setDrc(const DrcSettings& settings, int32_t index);

    bool biqEnabled = false;           // equalizer: the designed sections, else unity
    bool splitEnabled = false;         // crossover: two bands, else one
    std::array<bool, 2> drcEnabled{};  // each DRC
    int32_t crossoverHz = 300;         // 10 up
    std::array<DrcSettings, 2> drc{};  // in step with the coefficients after reset
    CAmpCoefficients coefficients;
};

}  // namespace tonvane
