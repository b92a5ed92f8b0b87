// Target, gate and loudness: what a design starts from.
#include <memory>

#include <gmock/gmock.h>

#include "design/EqDesigner.h"
#include "design/TargetShaping.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::Each;

TEST(Target, IsFlatAsTheZeroCurveAndTheSameAsSavedOrUserCurve) {
    DesignCurve flat, saved, user;
    ShapeTarget(BuiltInTargetCurve, zeroCurve, 48000, flat);
    ShapeTarget(BuiltInTargetCurve, savedCurve, 48000, saved);
    ShapeTarget(BuiltInTargetCurve, userCurve, 48000, user);
    EXPECT_THAT(flat, Each(1.0));
    EXPECT_EQ(saved, user);
    for (const int32_t i : {1, 100, 2048}) {
        const double hertz = i * (48000.0 / designLength);
        EXPECT_EQ(TargetPowerAt(BuiltInTargetCurve, zeroCurve, hertz), 1.0);
        EXPECT_EQ(TargetPowerAt(BuiltInTargetCurve, userCurve, hertz), user[i]);
    }
}

class Preparation : public tests::WithFftTables {
  protected:
    Preparation() { designer->sampleRate = 48000; }

    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
};

TEST_F(Preparation, AnOnsetBehindTheEndLeavesTheGateOpen) {
    designer->prepareFromImpulse(tests::Noise(responseLength), responseLength - 32);
    EXPECT_THAT(designer->gate, Each(1.0));
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
