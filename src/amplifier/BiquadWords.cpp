#include "amplifier/BiquadWords.h"

#include "amplifier/FixedPoint.h"

namespace tonvane {

BiquadWords EncodeBiquad(const Biquad& section) {
    return {ToCoefWord(section.b0), ToCoefWord(section.b1), ToCoefWord(section.b2),
            ToCoefWord(-section.a1), ToCoefWord(-section.a2)};
}

std::vector<int32_t> EncodeBiquads(std::span<const Biquad> sections) {
    std::vector<int32_t> words;
    words.reserve(sections.size() * wordsPerBiquad);
    for (const Biquad& section : sections) {
        const BiquadWords encoded = EncodeBiquad(section);
        words.insert(words.end(), encoded.begin(), encoded.end());
    }
    return words;
}

std::vector<Biquad> DecodeBiquads(std::span<const int32_t> words) {
    std::vector<Biquad> sections;
    sections.reserve(words.size() / wordsPerBiquad);
    for (size_t at = 0; at + wordsPerBiquad <= words.size(); at += wordsPerBiquad) {
        // Subtracted, for no zero with a minus.
        sections.push_back({FromCoefWord(words[at]), FromCoefWord(words[at + 1]),
                            FromCoefWord(words[at + 2]), 0.0 - FromCoefWord(words[at + 3]),
                            0.0 - FromCoefWord(words[at + 4])});
    }
    return sections;
}

}  // namespace tonvane
