#include "refine/BoundedWords.h"

#include <algorithm>

#include "elementary/Elementary.h"
#include "refine/SectionPower.h"

namespace tonvane {

namespace {

constexpr int32_t boundPoints = 1024;  // of each of the two rows
constexpr double lowestBoundHz = 5.0;
constexpr double highestBoundShare = 0.4999;  // of the sample rate
constexpr int32_t encodingTurns = 12;

}  // namespace

std::vector<double> BoundTangents(int32_t sampleRate) {
    std::vector<double> tangents;
    tangents.reserve(2 * boundPoints);
    const double span = elementary::Log(highestBoundShare * sampleRate / lowestBoundHz);
    for (int32_t i = 0; i < boundPoints; ++i) {
        const double hertz = lowestBoundHz * elementary::Exp(span * i / (boundPoints - 1));
        tangents.push_back(TangentSquare(hertz, sampleRate));
    }
    for (int32_t i = 1; i <= boundPoints; ++i) {
        tangents.push_back(TangentSquare(0.5 * i / (boundPoints + 0.5), 1.0));
    }
    return tangents;
}

double HighestLevelDb(std::span<const Biquad> sections, std::span<const double> tangents) {
    std::vector<double> powers;
    CascadePower(sections, tangents, powers);
    return decibelsPerNeper * elementary::Log(*std::ranges::max_element(powers));
}

BoundedWords EncodeWithin(const SectionChain& chain, double limitDb,
                          std::span<const double> tangents) {
    BoundedWords result;
    double gainDb = chain.gainDb;
    for (int32_t turn = 0; turn < encodingTurns && !result.keepsLimit; ++turn) {
        result.sections = chain.withGain(gainDb);
        result.words = EncodeBiquads(result.sections);
        const double excess = HighestLevelDb(DecodeBiquads(result.words), tangents) - limitDb;
        result.keepsLimit = excess <= 0.0;
        gainDb -= excess + (0.5 * turn + 0.1) * 0.001;
    }
    return result;
}

}  // namespace tonvane
