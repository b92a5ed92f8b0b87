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

TEST(Target, IsFlatAsTheZeroCurveAndTheSameAsSavedOrUserCurve) {
    DesignCurve flat;
    DesignCurve saved;
    DesignCurve user;
    ShapeTarget(BuiltInTargetCurve, zeroCurve, 48000, flat);
    ShapeTarget(BuiltInTargetCurve, savedCurve, 48000, saved);
    ShapeTarget(BuiltInTargetCurve, userCurve, 48000, user);
    EXPECT_THAT(flat, Each(1.0));
    EXPECT_EQ(saved, user);
}

class Preparation : public tests::WithFftTables {
  protected:
    Preparation() { designer->sampleRate = 48000; }

    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
};

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

struct Smoothed {
    explicit Smoothed(const ComplexVector& spectrum) { SmoothSpectrum(spectrum, reduced, power); }
    DesignCurve reduced;
    DesignCurve power;
};

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

}  // namespace
}  // namespace tonvane
