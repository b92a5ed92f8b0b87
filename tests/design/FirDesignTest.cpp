// The target, what a design starts from, the minimum-phase filter and the search for its level.
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "design/EqDesigner.h"
#include "design/TargetShaping.h"
#include "elementary/Elementary.h"
#include "support/CallWatch.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::DoubleNear;
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

class FirDesign : public tests::WithFftTables {
  protected:
    FirDesign() {
        designer->sampleRate = 48000;
        designer->setTapCount(256);
        designer->setTarget(BuiltInTargetCurve, zeroCurve);
    }

    std::span<const double> taps() { return designer->firTaps.first(designer->tapCount); }

    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
};

TEST_F(FirDesign, AFlatResponseGivesAFlatFilterOfTheClampsHeight) {
    for (const double clamp : {-1.0, -6.0, -12.0}) {
        designer->gainClampDb = clamp;
        designer->prepareFromSpectrum(ComplexVector(responseBins, 3.0));
        designer->designFir(48000);
        const double height = std::pow(10.0, clamp / 20.0);
        EXPECT_NEAR(taps()[0], height, 3e-4 * height);
        EXPECT_THAT(taps().subspan(1), Each(DoubleNear(0.0, 1e-3 * height)));
    }
    const int64_t before = tests::AllocationCount();
    designer->designFir(48000);
    EXPECT_EQ(tests::AllocationCount(), before) << "a search allocates";
}

// Also where the loudness is the same to the last places at half of the levels, at a clamp of 0, or
// never reaches the wanted one, at +1 dB.
TEST_F(FirDesign, TheSearchEndsWhereThatOfAllMidpointsDoes) {
    ComplexVector uneven(responseBins);
    for (int32_t k = 0; k < responseBins; ++k) {
        uneven[k] = 2.0 + std::cos(k / 500.0);
    }
    for (const double clamp : {1.0, 0.0, -1.0, -3.0, -6.0, -12.0}) {
        designer->gainClampDb = clamp;
        designer->prepareFromSpectrum(uneven);
        designer->designFir(48000);
        const double found = designer->level;
        const std::vector<double> result(taps().begin(), taps().end());
        EXPECT_TRUE(clamp != 0.0 || std::fabs(result[0] - 1.0) < 1e-9) << "nothing to cut";

        const double wanted = elementary::Exp10(clamp / 20.0);
        const double top = *std::ranges::max_element(designer->measuredPower);
        double low = 1e-12 * top;
        double high = 10000.0 * top;
        for (int pass = 0; pass < 16; ++pass) {
            const double middle = std::sqrt(low * high);
            designer->trial(middle, wanted);
            EXPECT_TRUE(pass < 15 || middle == found) << clamp;
            (wanted < designer->loudnessRatio ? high : low) = middle;
        }
        EXPECT_THAT(designer->firWork.samples.first(256), testing::ElementsAreArray(result));
    }
}

TEST_F(FirDesign, ResamplingReadsTheCurveAtTheOutputRate) {
    for (int32_t i = 0; i < designPoints; ++i) {
        designer->filterPower[i] = 10.0 + i;
    }
    for (const int32_t rate : {24000, 44100, 48000, 96000}) {
        designer->resampleCurve(rate, 0.5);
        for (int32_t i = 0; i < designPoints; ++i) {
            const double position = i * (rate / 48000.0);
            const double expected = position <= 2048.0 ? 10.0 + position : 0.25;
            ASSERT_NEAR(designer->designPower[i], expected, 1e-9) << rate << " " << i;
        }
    }
}

TEST_F(FirDesign, AnOnsetBehindTheEndLeavesTheGateOpen) {
    designer->prepareFromImpulse(tests::Noise(responseLength), responseLength - 32);
    EXPECT_THAT(designer->gate, Each(1.0));
}

TEST_F(FirDesign, LoudnessKeepsTheWeightsOfTheFirstRate) {
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
