#include "amplifier/RegisterGroups.h"

#include "amplifier/RegisterPresets.h"
#include "amplifier/RegisterTable.h"

namespace tonvane {

namespace {

using namespace registers;

constexpr int32_t equalizerSections = 7;
constexpr int32_t fullWeight = 0x800000;

void append(std::vector<RegisterWrite>& list, const std::vector<RegisterWrite>& more) {
    list.insert(list.end(), more.begin(), more.end());
}

}  // namespace

std::vector<RegisterWrite> EqualizerGroup(bool biqEnabled, std::span<const int32_t> designed) {
    std::vector<RegisterWrite> writes;
    if (designed.empty()) {
        return writes;
    }
    for (int32_t k = 0; k < equalizerSections; ++k) {
        RegisterWrite write{equalizerFirst + k, UnityBiquad};
        for (int32_t w = 0; biqEnabled && w < wordsPerBiquad; ++w) {
            write.words[w] = designed[wordsPerBiquad * k + w];
        }
        writes.push_back(write);
    }
    return writes;
}

std::vector<RegisterWrite> CrossoverGroup(const AmplifierSettings& settings) {
    const CAmpCoefficients& words = settings.coefficients;
    const bool split = settings.splitEnabled;
    const BiquadWords& first = split ? words.highBand : UnityBiquad;
    const BiquadWords& second = split ? words.lowBand : UnityBiquad;
    return {
        {crossoverFirst, first},       {crossoverFirst + 1, first},
        {drc1OutWeight, {fullWeight}}, {crossoverFirst + 2, second},
        {crossoverFirst + 3, second},  {drc2OutWeight, {split ? fullWeight : 0}},
    };
}

std::vector<RegisterWrite> DrcGroup(const AmplifierSettings& settings) {
    constexpr int32_t bothOff = 0x20020;
    const int32_t enableBits = (settings.drcEnabled[0] ? 1 : 0) + (settings.drcEnabled[1] ? 2 : 0);
    std::vector<RegisterWrite> writes{{drcControl, {bothOff + enableBits}}};
    for (int32_t i = 0; i < 2; ++i) {
        if (settings.drcEnabled[i]) {
            append(writes, DrcRegisters(settings, i));
        }
    }
    return writes;
}

std::vector<RegisterWrite> DrcRegisters(const AmplifierSettings& settings, int32_t index) {
    const DrcWords& words = settings.coefficients.drc[index];
    const bool isFirst = index == 0;
    return {
        {isFirst ? drc1AlphaOmega : drc2AlphaOmega, {words.alpha, words.omega}},
        {isFirst ? drc1AttackRelease : drc2AttackRelease, {words.attack, words.release}},
        {isFirst ? drc1Threshold : drc2Threshold, {words.attackThreshold, words.releaseThreshold}},
    };
}

std::vector<RegisterWrite> StartValues(std::span<const int32_t> designed) {
    const AmplifierSettings off;
    std::vector<RegisterWrite> writes(RegisterPresets.begin(), RegisterPresets.end());
    append(writes, EqualizerGroup(off.biqEnabled, designed));
    append(writes, CrossoverGroup(off));
    append(writes, DrcGroup(off));
    return writes;
}

}  // namespace tonvane
