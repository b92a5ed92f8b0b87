#include "amplifier/AmpCoefficients.h"

#include <algorithm>

#include "amplifier/FixedPoint.h"
#include "elementary/Elementary.h"
#include "filters/ClassicFilter.h"

namespace tonvane {

namespace {

constexpr int32_t order = 2;

// Half the power, the level at which two such sections in cascade are 6 dB down.
double edgeDb() {
    return 10.0 * elementary::Log(2.0) / elementary::Log(10.0);
}

std::array<double, order + 1> coefficientsOf(const CPolynomial& polynomial) {
    std::array<double, order + 1> values{};
    for (int32_t i = 0; i <= std::min(order, polynomial.degree); ++i) {
        values[i] = polynomial[i];
    }
    return values;
}

BiquadWords sectionWords(BandType band, double edge) {
    constexpr double sampleFrequency = 2.0;  // edges are fractions of half the sample rate
    const CRationalFunction filter =
        DesignButterworthFilter(band, order, edgeDb(), sampleFrequency, edge, 0.0);
    const auto [b0, b1, b2] = coefficientsOf(filter.numerator);
    const auto [a0, a1, a2] = coefficientsOf(filter.denominator);  // a0 is 1
    return EncodeBiquad({b0, b1, b2, a1, a2});
}

}  // namespace

void CAmpCoefficients::SetCrossover(int32_t hz) {
    const double edge = 2.0 * hz / sampleRate;
    lowBand = sectionWords(BandType::LowPass, edge);
    highBand = sectionWords(BandType::HighPass, edge);
}

void CAmpCoefficients::SetDrc(const DrcSettings& settings, int32_t index) {
    const auto factor = [&](int32_t milliseconds) {
        return ToCoefWord(1.0 - elementary::Exp(-1.0 / (milliseconds * 0.001 * sampleRate)));
    };
    constexpr int32_t one = 0x800000;
    DrcWords& words = drc[index];
    words.alpha = factor(settings.alphaMs);
    words.omega = one - words.alpha;
    words.attack = factor(settings.attackMs);
    words.release = -factor(settings.releaseMs);
    words.attackThreshold = ToThresholdWord(elementary::Exp10(0.05 * settings.thresholdDb));
    words.releaseThreshold = words.attackThreshold - 1;
}

}  // namespace tonvane
