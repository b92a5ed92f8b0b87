#include "amplifier/AmplifierSettings.h"

namespace tonvane {

void AmplifierSettings::reset(int32_t sampleRate) {
    *this = AmplifierSettings();
    coefficients.SetSampleRate(sampleRate);
    setCrossover(crossoverHz);
    for (int32_t i = 0; i < 2; ++i) {
        setDrc(drc[i], i);
    }
}

void AmplifierSettings::setCrossover(int32_t hz) {
    crossoverHz = hz;
    coefficients.SetCrossover(hz);
}

void AmplifierSettings::setDrc(const DrcSettings& settings, int32_t index) {
    drc[index] = settings;
    coefficients.SetDrc(settings, index);
}

}  // namespace tonvane
