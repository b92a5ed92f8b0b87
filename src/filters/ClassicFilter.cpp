#include "filters/ClassicFilter.h"

#include <algorithm>
#include <numbers>

#include "elementary/Elementary.h"
#include "filters/ClassicPrototypes.h"
#include "filters/EllipticPrototype.h"

namespace tonvane {

namespace {

CRationalFunction prototypeOf(FilterFamily family, int32_t order, double passbandDb,
                              double stopbandDb) {
    switch (family) {
        case FilterFamily::Butterworth:
            return ButterworthPrototype(order, EpsilonOfDecibels(passbandDb));
        case FilterFamily::Chebyshev1:
            return Chebyshev1Prototype(order, EpsilonOfDecibels(passbandDb));
        case FilterFamily::Chebyshev2:
            return Chebyshev2Prototype(order, EpsilonOfDecibels(stopbandDb));
        case FilterFamily::Elliptic:
            return EllipticPrototype(order, EpsilonOfDecibels(passbandDb), stopbandDb);
        case FilterFamily::Bessel:
            return BesselPrototype(order, passbandDb);
    }
    return {};
}

// What takes the place of the prototype's s; t is the edge or the middle, b the width of the band.
CRationalFunction replacementOf(BandType band, double t, double b) {
    const CPolynomial s = CPolynomial::Identity();
    const CPolynomial resonance{t * t, 0.0, 1.0};
    switch (band) {
        case BandType::LowPass:
            return {s, t};
        case BandType::HighPass:
            return {t, s};
        case BandType::BandPass:
            return {resonance, {0.0, b}};
        case BandType::BandStop:
            return {{0.0, b}, resonance};
    }
    return {};
}

}  // namespace

CRationalFunction DesignClassicFilter(FilterFamily family, BandType band, int32_t order,
                                      double passbandDb, double stopbandDb, double sampleFrequency,
                                      double edgeFrequency, double bandwidth) {
    constexpr double pi = std::numbers::pi;
    const double t = elementary::Tan(pi * edgeFrequency / sampleFrequency);
    const double cosine = elementary::SinCos(t).cosine;
    const double b = pi / (cosine * cosine) * bandwidth / sampleFrequency;

    const auto replacement = replacementOf(band, t, b);
    const int32_t polesPerOrder =
        std::max(replacement.numerator.degree, replacement.denominator.degree);
    if (replacement.IsEmpty() || order > maximumOrder / polesPerOrder) {
        return {};
    }
    const auto prototype = prototypeOf(family, order, passbandDb, stopbandDb);
    if (prototype.IsEmpty()) {
        return {};
    }
    const CRationalFunction bilinear({1.0, -1.0}, {1.0, 1.0});
    auto digital = prototype.Substitute(replacement).Substitute(bilinear);
    digital.Normalize();
    return digital;
}

CRationalFunction DesignButterworthFilter(BandType band, int32_t order, double passbandDb,
                                          double sampleFrequency, double edgeFrequency,
                                          double bandwidth) {
    return DesignClassicFilter(FilterFamily::Butterworth, band, order, passbandDb, 0.0,
                               sampleFrequency, edgeFrequency, bandwidth);
}

}  // namespace tonvane
