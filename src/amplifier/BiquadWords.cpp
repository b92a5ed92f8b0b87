#include "amplifier/BiquadWords.h"

#include "amplifier/FixedPoint.h"

namespace tonvane {

void EncodeBiquads(int32_t sectionCount, std::span<const double> numerators,
                   std::span<const double> denominators, double gain, std::span<int32_t> output) {
    for (int32_t k = 0; k < sectionCount; ++k) {
        const auto b = numerators.subspan(3 * k, 3);
        const auto a = denominators.subspan(3 * k, 3);
        const auto words = output.subspan(wordsPerBiquad * k, wordsPerBiquad);
        words[0] = ToCoefWord(b[0] * gain);
        words[1] = ToCoefWord(b[1] * gain);
        words[2] = ToCoefWord(b[2] * gain);
        words[3] = ToCoefWord(-a[1]);
        words[4] = ToCoefWord(-a[2]);
    }
}

}  // namespace tonvane
