// Target, pass-band, gate, smoothing and loudness weights: what a design starts from.
#include <cmath>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "design/BandWeight.h"
#include "design/EqDesigner.h"
#include "design/Smoothing.h"
#include "design/TargetShaping.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::Each;

constexpr int32_t gridRate = 40960;  // ten hertz a point

TargetRecord recordOf(std::array<CurvePoint, 7> knots) {
    TargetRecord record = BuiltInTargetCurve;
    std::ranges::copy(knots, record.points.begin());
    return record;
}

double powerDb(double power) {
    return 10.0 * std::log10(power);
}

TEST(Target, RunsThroughItsPlateausAndFallsOffBeyondTheOuterKnots) {
    const TargetRecord level = recordOf(
        {{{100, -7}, {150, -7}, {400, -7}, {900, -7}, {3000, -7}, {8000, -7}, {10000, -7}}});
    // Only the step from 400 to 900 Hz is left: its middle lies at 600 Hz, half way up in dB.
    const TargetRecord step =
        recordOf({{{20, -5}, {50, -5}, {100, -5}, {400, -5}, {900, 7}, {3000, 7}, {19000, 7}}});
    const TargetRecord fall =
        recordOf({{{20, 4}, {50, 4}, {100, 4}, {400, 4}, {900, -8}, {3000, -8}, {19000, -8}}});
    const auto expectLevels = [](const TargetRecord& record, const std::vector<int32_t>& hertz,
                                 const std::vector<double>& dB, double tolerance) {
        DesignCurve power;
        ShapeTarget(record, userCurve, gridRate, power);
        for (size_t i = 0; i < hertz.size(); ++i) {
            EXPECT_NEAR(powerDb(power[hertz[i] / 10]), dB[i], tolerance) << hertz[i];
        }
        EXPECT_EQ(power[0], 0.0);
    };
    expectLevels(level, {1000}, {-7.0}, 1e-3);
    // The corners have half the power at the outer knots and 1/17 an octave beyond.
    expectLevels(level, {50, 100, 10000, 20000}, {-19.3045, -10.0103, -10.0103, -19.3045}, 1e-4);
    expectLevels(step, {100, 4000}, {-5.0, 7.0}, 0.3);
    expectLevels(step, {600}, {1.0}, 1e-4);
    // With Q = 1.2*600/(900 - 400) the shelf overshoots by 0.817 dB at its own knots.
    expectLevels(step, {400, 900}, {-5.817, 7.817}, 1e-3);
    expectLevels(fall, {100, 4000}, {4.0, -8.0}, 0.3);
    expectLevels(fall, {600}, {-2.0}, 1e-4);

    DesignCurve flat;
    DesignCurve saved;
    DesignCurve user;
    ShapeTarget(step, zeroCurve, gridRate, flat);
    ShapeTarget(step, savedCurve, gridRate, saved);
    ShapeTarget(step, userCurve, gridRate, user);
    EXPECT_THAT(flat, Each(1.0));
    EXPECT_EQ(saved, user);
}

TEST(Passband, HasHalfThePowerAtItsEdgesAndEighthPowerFalls) {
    TargetRecord record = BuiltInTargetCurve;
    record.points[TargetRecord::lowEdge] = {100, -3};
    record.points[TargetRecord::highEdge] = {10000, 9};
    DesignCurve passband;
    ShapePassband(record, gridRate, passband);
    EXPECT_NEAR(powerDb(passband[5]), -24.0993, 1e-4);  // 1/257, an octave below
    EXPECT_NEAR(powerDb(passband[10]), -3.0103, 1e-4);
    EXPECT_NEAR(powerDb(passband[100]), 0.0, 1e-4);
    EXPECT_NEAR(powerDb(passband[1000]), -3.0103, 1e-4);
    EXPECT_NEAR(powerDb(passband[2000]), -24.0993, 1e-4);
    EXPECT_EQ(passband[0], 0.0);
}

class Preparation : public tests::WithFftTables {
  protected:
    Preparation() { designer->sampleRate = 48000; }

    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
};

// x^3*exp(-x) from its maximum at x = 3, one unit in 50 ms.
TEST_F(Preparation, GateStartsAtTheOnsetAndFallsWithItsTimeConstant) {
    const std::vector<double> impulse = tests::Noise(responseLength);
    for (const int32_t first : {0, 500}) {
        designer->prepareFromImpulse(impulse, first - 32);
        EXPECT_THAT(std::span(designer->gate).first(first), Each(1.0));
        EXPECT_EQ(designer->gate[first], 1.0);
        EXPECT_LT(designer->gate[first + 1], 1.0);
        EXPECT_NEAR(designer->gate[first + 2400], 64.0 / 27.0 * std::exp(-1.0), 1e-14);
        EXPECT_NEAR(designer->gate[first + 12000], 512.0 / 27.0 * std::exp(-5.0), 1e-14);
    }
}

TEST_F(Preparation, GateShapesTheCurveButNotTheLoudness) {
    const std::vector<double> impulse = tests::Noise(responseLength);
    SpectrumBuffer raw;
    raw.resize(responseLength);
    raw.setSamplesPadded(impulse);
    raw.forward();
    designer->prepareFromSpectrum(raw.spectrum);
    const double loudness = designer->measuredLoudness;
    const DesignCurve ungated = designer->measuredPower;

    designer->prepareFromImpulse(impulse, -32);
    EXPECT_EQ(designer->measuredLoudness, loudness);
    EXPECT_EQ(designer->measured.spectrum, raw.spectrum);
    EXPECT_LT(designer->measuredPower[1000], 0.5 * ungated[1000]);
    designer->prepareFromImpulse(impulse, responseLength - 32);  // the onset behind the end
    EXPECT_THAT(designer->gate, Each(1.0));
    EXPECT_EQ(designer->measuredPower, ungated);
}

TEST_F(Preparation, LoudnessKeepsTheWeightsOfTheFirstRate) {
    const ComplexVector flat(responseBins, 2.0);
    designer->prepareFromSpectrum(flat);
    EXPECT_NEAR(designer->measuredLoudness, 4.0, 1e-12);
    EXPECT_EQ(designer->bandWeight.firstBin, 27);  // 40 Hz
    EXPECT_EQ(designer->bandWeight.endBin, 16384);
    const double weight = designer->bandWeight.weights[1000];
    designer->sampleRate = 96000;
    designer->prepareFromSpectrum(flat);
    EXPECT_EQ(designer->bandWeight.firstBin, 27);
    EXPECT_EQ(designer->bandWeight.weights[1000], weight);
}

TEST(BandWeight, CountsItsBandByTheFormula) {
    BandWeight weight;
    weight.build(4096, gridRate, 100.0, 10000.0);
    EXPECT_NEAR(weight.weights[44], 1.0 / ((140.0 / 440.0 + 1.0) * 2.0 * 4.0), 1e-15);
    EXPECT_NEAR(weight.weights[14], 1.0 / (2.0 * (14.0 / 44.0 + 1.0) * std::pow(580.0 / 140.0, 2)),
                1e-15);
    ComplexVector inside(2049, 0.0);
    ComplexVector outside(2049, 3.0);
    for (int i = 10; i < 1000; ++i) {
        std::swap(inside[i], outside[i]);
    }
    EXPECT_EQ(weight.energy(outside), 0.0);
    EXPECT_NEAR(weight.energy(inside), 9.0, 1e-12);
    EXPECT_NEAR(weight.energyOfProduct(inside, ComplexVector(2049, {1.0, -2.0})), 45.0, 1e-12);
}

struct Smoothed {
    explicit Smoothed(const ComplexVector& spectrum) { SmoothSpectrum(spectrum, reduced, power); }
    DesignCurve reduced;
    DesignCurve power;
};

TEST(Smoothing, LeavesAFlatSpectrumExactlyFlat) {
    EXPECT_THAT(Smoothed(ComplexVector(responseBins, {0.0, 1.0})).power, Each(1.0));
}

TEST(Smoothing, SpreadsALineOverAQuarterOctaveToEitherSide) {
    ComplexVector line(responseBins, 0.0);
    line[8000] = {0.0, -1.0};
    const Smoothed smoothed(line);
    // A Hann window over 64 bins, of sum 32, seen at every eighth bin: seven points above zero.
    EXPECT_NEAR(smoothed.reduced[1000], 1.0 / 32.0, 1e-15);
    EXPECT_NEAR(smoothed.reduced[1002], 0.5 / 32.0, 1e-15);
    EXPECT_NEAR(smoothed.reduced[998], 0.5 / 32.0, 1e-15);
    EXPECT_THAT(std::span(smoothed.reduced).first(997), Each(0.0));
    EXPECT_THAT(std::span(smoothed.reduced).subspan(1004), Each(0.0));
    // The window (E^2 - q^2)^2 with E = 190 has the sum 16/15*E^5.
    EXPECT_NEAR(smoothed.power[1000], 0.125 * 15.0 / 16.0 / 190.0, 1e-6);
    EXPECT_GT(smoothed.power[842], 0.0);
    EXPECT_GT(smoothed.power[1233], 0.0);
    EXPECT_THAT(std::span(smoothed.power).first(836), Each(0.0));
    EXPECT_THAT(std::span(smoothed.power).subspan(1240), Each(0.0));
}

TEST(Smoothing, RenormalisesTheWindowsCutAtTheEnds) {
    ComplexVector ends(responseBins, 0.0);
    ends[0] = 1.0;
    ends[16384] = 1.0;
    const Smoothed smoothed(ends);
    EXPECT_NEAR(smoothed.reduced[0], 1.0 / 16.5, 1e-15);
    EXPECT_NEAR(smoothed.reduced[2048], 1.0 / 16.5, 1e-15);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(smoothed.power[i], smoothed.reduced[i]) << i;
    }
    EXPECT_NE(smoothed.power[3], smoothed.reduced[3]);
}

}  // namespace
}  // namespace tonvane
