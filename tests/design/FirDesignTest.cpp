// The minimum-phase filter and the search for its level.
#include <cmath>
#include <memory>

#include <gmock/gmock.h>

#include "design/EqDesigner.h"
#include "support/CallWatch.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::DoubleNear;
using testing::Each;

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

TEST_F(FirDesign, NothingIsCutAtAClampOfZero) {
    ComplexVector uneven(responseBins);
    for (int32_t k = 0; k < responseBins; ++k) {
        uneven[k] = 2.0 + std::cos(k / 500.0);
    }
    designer->prepareFromSpectrum(uneven);
    designer->designFir(48000);
    EXPECT_NEAR(taps()[0], 1.0, 1e-9);
    EXPECT_THAT(taps().subspan(1), Each(DoubleNear(0.0, 1e-9)));
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

}  // namespace
}  // namespace tonvane
