// The families against the textbook's magnitude formulas, in all band types.
#include <algorithm>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/BiquadWords.h"
#include "filters/ClassicFilter.h"
#include "filters/ClassicPrototypes.h"
#include "filters/Magnitude.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using tests::DigitalDecibels;
using enum FilterFamily;
using enum BandType;

constexpr double pi = std::numbers::pi;
const double halfPowerDb = 10.0 * std::log(2.0) / std::log(10.0);

// T_N on the whole positive axis.
double chebyshev(int32_t order, double x) {
    return x <= 1.0 ? std::cos(order * std::acos(x)) : std::cosh(order * std::acosh(x));
}

// The frequency of the prototype that a digital frequency stands for. The bilinear transform takes
// f to tan(pi f); the width of a band is warped with the cosine of the tangent t, where the
// textbook's has that of the angle.
double prototypeFrequency(BandType band, double f, double edge, double bandwidth) {
    const double w = std::tan(pi * f);
    const double t = std::tan(pi * edge);
    const double b = pi * bandwidth / (std::cos(t) * std::cos(t));
    switch (band) {
        case LowPass:
            return w / t;
        case HighPass:
            return t / w;
        case BandPass:
            return std::fabs(w * w - t * t) / (b * w);
        case BandStop:
            return b * w / std::fabs(w * w - t * t);
    }
    return 0.0;
}

// Closed forms: 10 log10 of |H|^2 at the prototype's frequency w.
double textbookDecibels(FilterFamily family, int32_t order, double passDb, double stopDb,
                        double w) {
    const double passEpsilon2 = std::pow(10.0, passDb / 10.0) - 1.0;
    const double stopEpsilon2 = std::pow(10.0, stopDb / 10.0) - 1.0;
    if (family == Butterworth) {
        return -10.0 * std::log10(1.0 + passEpsilon2 * std::pow(w, 2 * order));
    }
    if (family == Chebyshev1) {
        const double t = chebyshev(order, w);
        return -10.0 * std::log10(1.0 + passEpsilon2 * t * t);
    }
    const double t = chebyshev(order, 1.0 / w);
    // At an even order the turned-over epsilon lowers the whole curve; the textbook's stays.
    const double loss = order % 2 == 0 ? 10.0 * std::log10(1.0 + 1.0 / stopEpsilon2) : 0.0;
    return -10.0 * std::log10(1.0 + stopEpsilon2 / (t * t)) - loss;
}

TEST(ClassicFilter, MagnitudeDepartsFromTheClosedForm) {
    constexpr double passDb = 1.5;
    constexpr double stopDb = 45.0;
    for (const auto family : {Butterworth, Chebyshev1, Chebyshev2}) {
        for (const auto band : {LowPass, HighPass, BandPass, BandStop}) {
            for (const int32_t order : {1, 2, 3, 4, 5}) {
                for (const double edge : {0.09, 0.17, 0.28}) {
                    SCOPED_TRACE(testing::Message()
                                 << "family " << int(family) << ", band " << int(band) << ", order "
                                 << order << ", edge " << edge);
                    const double bandwidth = edge / 3.0;
                    const auto h = DesignClassicFilter(family, band, order, passDb, stopDb, 1.0,
                                                       edge, bandwidth);
                    for (const double f : {0.012, 0.06, 0.092, 0.12, 0.16, 0.21, 0.29, 0.43}) {
                        const double w = prototypeFrequency(band, f, edge, bandwidth);
                        const double expected = textbookDecibels(family, order, passDb, stopDb, w);
                        // Deep in the stop band little is left of the sums' digits.
                        const double tolerance = expected > -60.0 ? 1e-6 : 1e-3;
                        if (expected > -90.0) {
                            EXPECT_NEAR(DigitalDecibels(h, f), expected, tolerance) << "at " << f;
                        }
                    }
                }
            }
        }
    }
}

TEST(ClassicFilter, CrossoverSectionsMissTheirCoefficients) {
    const auto low = DesignButterworthFilter(LowPass, 2, halfPowerDb, 2.0, 0.0125, 0.0);
    const auto high = DesignButterworthFilter(HighPass, 2, halfPowerDb, 2.0, 0.0125, 0.0);
    EXPECT_NEAR(DigitalDecibels(low, 300.0 / 48000.0), -halfPowerDb, 1e-9);
    EXPECT_NEAR(DigitalDecibels(high, 300.0 / 48000.0), -halfPowerDb, 1e-9);
    EXPECT_NEAR(DigitalDecibels(high, 0.5), 0.0, 1e-12);

    const auto wordsOf = [](const CRationalFunction& h) {
        BiquadWords words{};
        EncodeBiquads(1, {h.numerator.coefficients.get(), 3}, {h.denominator.coefficients.get(), 3},
                      1.0, words);
        return words;
    };
    EXPECT_THAT(wordsOf(low), ElementsAre(0xC4A, 0x1895, 0xC4A, 0xF8E4A5, 0x386EA32));
    EXPECT_THAT(wordsOf(high), ElementsAre(0x7C7E9D, 0x30702C7, 0x7C7E9D, 0xF8E4A5, 0x386EA32));
}

TEST(ClassicFilter, ChebyshevRippleLeavesItsBand) {
    for (const int32_t order : {4, 5}) {
        const auto h = DesignClassicFilter(Chebyshev1, LowPass, order, 1.0, 0.0, 8.0, 1.0, 0.0);
        EXPECT_NEAR(DigitalDecibels(h, 0.0), order % 2 == 0 ? -1.0 : 0.0, 1e-9);
        double lowest = 0.0;
        double highest = -1.0;
        for (int32_t i = 0; i <= 4000; ++i) {
            const double level = DigitalDecibels(h, 0.125 * i / 4000.0);
            lowest = std::min(lowest, level);
            highest = std::max(highest, level);
        }
        EXPECT_NEAR(lowest, -1.0, 1e-5);
        EXPECT_NEAR(highest, 0.0, 1e-5);

        // The even order is lower by 10 log10(1 + 1/9999) throughout.
        const auto stop = DesignClassicFilter(Chebyshev2, LowPass, order, 0.0, 40.0, 8.0, 1.0, 0.0);
        const double limit = order % 2 == 0 ? -40.0 - 10.0 * std::log10(10000.0 / 9999.0) : -40.0;
        EXPECT_NEAR(DigitalDecibels(stop, 0.0), limit + 40.0, 1e-9);
        EXPECT_NEAR(DigitalDecibels(stop, 0.125), limit, 1e-9);
        double highestStop = -100.0;
        for (int32_t i = 1; i < 4000; ++i) {
            highestStop = std::max(highestStop, DigitalDecibels(stop, 0.125 + 0.375 * i / 4000.0));
        }
        EXPECT_LE(highestStop, limit + 1e-9);
        EXPECT_NEAR(highestStop, limit, 1e-3);
    }
}

// Stop-band edges at 1 dB and 40 dB: 1/k of N K(k1) K'(k) = K'(k1) K(k), solved with SciPy's
// ellipk.
TEST(ClassicFilter, EllipticBandsMissTheirEdgesAndLevels) {
    constexpr double edge = 0.15;
    constexpr double bandwidth = 0.05;
    for (const auto& [order, stopEdge] : {std::pair{3, 2.416183604}, {4, 1.515484074}}) {
        for (const auto band : {LowPass, HighPass, BandPass, BandStop}) {
            SCOPED_TRACE(testing::Message() << "order " << order << ", band " << int(band));
            const auto h =
                DesignClassicFilter(Elliptic, band, order, 1.0, 40.0, 1.0, edge, bandwidth);
            int32_t passPoints = 0;
            int32_t stopPoints = 0;
            for (double f = 0.00025; f < 0.5; f += 0.0005) {
                const double w = prototypeFrequency(band, f, edge, bandwidth);
                const double level = DigitalDecibels(h, f);
                EXPECT_LE(level, w <= 1.0 ? 1e-7 : w < stopEdge ? -1.0 : -40.0 + 1e-6) << f;
                EXPECT_GE(level, w <= 1.0 ? -1.0 - 1e-7 : w < stopEdge ? -40.0 : -300.0) << f;
                passPoints += w <= 1.0;
                stopPoints += w >= stopEdge;
            }
            EXPECT_GT(passPoints, 50);
            EXPECT_GT(stopPoints, 40);
        }
    }
}

TEST(ClassicFilter, BesselEdgeIsNotAtTheLossAskedFor) {
    for (const double lossDb : {1.0, 3.0, 12.0}) {
        for (const int32_t order : {2, 3, 5, 8}) {
            const auto low =
                DesignClassicFilter(Bessel, LowPass, order, lossDb, 0.0, 1.0, 0.1, 0.0);
            const auto high =
                DesignClassicFilter(Bessel, HighPass, order, lossDb, 0.0, 1.0, 0.2, 0.0);
            EXPECT_NEAR(DigitalDecibels(low, 0.1), -lossDb, 1e-6);
            EXPECT_NEAR(DigitalDecibels(low, 0.0), 0.0, 1e-7);
            EXPECT_NEAR(DigitalDecibels(high, 0.2), -lossDb, 1e-6);
            EXPECT_NEAR(DigitalDecibels(high, 0.5), 0.0, 1e-7);
        }
    }
    // At order 1 the loss is not looked at: 1/(1 + s), half power at the edge.
    const auto first = DesignClassicFilter(Bessel, LowPass, 1, 12.0, 0.0, 1.0, 0.1, 0.0);
    EXPECT_NEAR(DigitalDecibels(first, 0.1), -halfPowerDb, 1e-12);
}

// theta_4(s) = s^4 + 10 s^3 + 45 s^2 + 105 s + 105, whatever the scale of s.
TEST(BesselPrototype, IsNotTheReverseBesselPolynomial) {
    const auto h = BesselPrototype(4, 3.0);
    ASSERT_EQ(h.denominator.degree, 4);
    const double scale = h.denominator[1];
    EXPECT_NEAR(h.denominator[2] / std::pow(scale, 2), 45.0 / 105.0, 1e-14);
    EXPECT_NEAR(h.denominator[3] / std::pow(scale, 3), 10.0 / 105.0, 1e-14);
    EXPECT_NEAR(h.denominator[4] / std::pow(scale, 4), 1.0 / 105.0, 1e-14);
}

// The half-power points of a narrow band lie bandwidth cos^2(theta)/cos^2(tan(theta)) apart,
// theta = pi edge/fs; the textbook's lie `bandwidth` apart.
TEST(ClassicFilter, BandWidthIsNotWarpedByTheCosineOfTheTangent) {
    constexpr double bandwidth = 1e-4;
    for (const double edge : {0.05, 0.125, 0.25}) {
        for (const auto band : {BandPass, BandStop}) {
            const auto h = DesignButterworthFilter(band, 1, halfPowerDb, 1.0, edge, bandwidth);
            const auto halfPowerPoint = [&](double inside, double outside) {
                for (int32_t step = 0; step < 60; ++step) {
                    const double middle = (inside + outside) / 2.0;
                    const bool passes = DigitalDecibels(h, middle) > -halfPowerDb;
                    (passes == (band == BandPass) ? inside : outside) = middle;
                }
                return inside;
            };
            const double width =
                halfPowerPoint(edge, edge + 0.02) - halfPowerPoint(edge, edge - 0.02);
            const double ratio = std::cos(pi * edge) / std::cos(std::tan(pi * edge));
            EXPECT_NEAR(width / bandwidth, ratio * ratio, 1e-5) << "edge " << edge;
        }
    }
}

TEST(ClassicFilter, EdgeAboveHalfTheSampleFrequencyIsRefused) {
    testing::internal::CaptureStderr();
    const auto h = DesignButterworthFilter(LowPass, 2, halfPowerDb, 2.0, 1.2, 0.0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    // t turns negative: the poles leave the unit circle, the magnitude is that of the edge's image.
    EXPECT_NEAR(DigitalDecibels(h, 0.4), -halfPowerDb, 1e-9);
    EXPECT_GT(h.denominator[2], 1.0);
}

TEST(ClassicFilter, RequestsWithoutAFilterGiveOne) {
    const auto design = [](int32_t family, int32_t band, int32_t order) {
        return DesignClassicFilter(static_cast<FilterFamily>(family), static_cast<BandType>(band),
                                   order, 1.0, 40.0, 1.0, 0.1, 0.02);
    };
    constexpr int32_t lowest = std::numeric_limits<int32_t>::min();
    constexpr int32_t highest = std::numeric_limits<int32_t>::max();
    for (const int32_t family : {0, 1, 2, 3, 4}) {
        EXPECT_EQ(design(family, 1, 3).denominator.degree, 3);
        for (const int32_t order : {lowest, -1, 0, maximumOrder + 1, highest}) {
            EXPECT_TRUE(design(family, 0, order).IsEmpty()) << family << " " << order;
        }
        EXPECT_TRUE(design(family, 2, maximumOrder / 2 + 1).IsEmpty());
    }
    for (const int32_t unknown : {lowest, -1, 5, highest}) {
        EXPECT_TRUE(design(unknown, 0, 2).IsEmpty());
        EXPECT_TRUE(design(0, unknown, 2).IsEmpty());
    }
    EXPECT_TRUE(design(0, 4, 2).IsEmpty());
}

TEST(ClassicFilter, SenselessValuesCrashOrNeverEnd) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    testing::internal::CaptureStderr();
    for (const double bad : {0.0, -1.0, 1e-310, 1e300, infinity, -infinity, nan}) {
        for (const auto family : {Butterworth, Chebyshev1, Chebyshev2, Elliptic, Bessel}) {
            for (const auto band : {LowPass, HighPass, BandPass, BandStop}) {
                for (const size_t which : {0, 1, 2, 3, 4}) {
                    double values[] = {1.0, 40.0, 1.0, 0.1, 0.02};
                    values[which] = bad;
                    const auto h = DesignClassicFilter(family, band, 3, values[0], values[1],
                                                       values[2], values[3], values[4]);
                    EXPECT_EQ(h.denominator[0], 1.0);
                    EXPECT_LE(h.numerator.degree, 6);
                }
            }
        }
    }
    testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace tonvane
