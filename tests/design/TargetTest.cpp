// Target, gate and loudness: what a design starts from.
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "design/EqDesigner.h"
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

}  // namespace
}  // namespace tonvane
