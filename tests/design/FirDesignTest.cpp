// A design on its own responses: what it starts from, the minimum-phase filter, the search for its
// level, and the fit of filters that are flat but for rounding.
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "design/CascadeResponse.h"
#include "design/EqDesigner.h"
#include "design/IirFitter.h"
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
    const double hertz = 100 * (48000.0 / designLength);
    EXPECT_EQ(TargetPowerAt(BuiltInTargetCurve, zeroCurve, hertz), 1.0);
    EXPECT_EQ(TargetPowerAt(BuiltInTargetCurve, userCurve, hertz), user[100]);
}

class Design : public tests::WithFftTables {
  protected:
    Design() {
        designer->sampleRate = 48000;
        designer->setTapCount(256);
        designer->setTarget(BuiltInTargetCurve, zeroCurve);
    }

    // The taps for a clamp and a response of these magnitudes over bins.
    std::vector<double> tapsFor(double clampDb, const auto& magnitude) {
        ComplexVector spectrum(responseBins);
        for (int32_t k = 0; k < responseBins; ++k) {
            spectrum[k] = magnitude(k);
        }
        designer->gainClampDb = clampDb;
        designer->prepareFromSpectrum(spectrum);
        designer->designFir(48000);
        const auto taps = designer->firTaps.first(256);
        return {taps.begin(), taps.end()};
    }

    std::vector<int32_t> wordsFor(double clampDb, const auto& magnitude) {
        IirFitter fitter;
        fitter.configure(48000, tapsFor(clampDb, magnitude), 7, designLength, clampDb);
        fitter.fit();
        return fitter.coefficientWords;
    }

    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
};

double flat(int32_t /*bin*/) {
    return 2.0;
}

// Also where the loudness is the same to the last places at half of the levels, at a clamp of 0, or
// never reaches the wanted one, at +1 dB.
TEST_F(Design, TheSearchEndsWhereThatOfAllMidpointsDoes) {
    for (const double clamp : {1.0, 0.0, -1.0, -3.0, -6.0, -12.0}) {
        const auto taps = tapsFor(clamp, [](int32_t k) { return 2.0 + std::cos(k / 500.0); });
        EXPECT_TRUE(clamp != 0.0 || std::fabs(taps[0] - 1.0) < 1e-9) << "nothing to cut";
        const double found = designer->level;
        const double wanted = elementary::Exp10(clamp / 20.0);
        const double top = *std::ranges::max_element(designer->measuredPower);
        double low = 1e-12 * top;
        double high = 10000.0 * top;
        double middle = 0.0;
        for (int pass = 0; pass < 16; ++pass) {
            middle = std::sqrt(low * high);
            designer->trial(middle, wanted);
            (wanted < designer->loudnessRatio ? high : low) = middle;
        }
        EXPECT_EQ(middle, found) << clamp;
        EXPECT_THAT(designer->firWork.samples.first(256), testing::ElementsAreArray(taps));
    }
    const int64_t before = tests::AllocationCount();
    designer->designFir(48000);
    EXPECT_EQ(tests::AllocationCount(), before) << "a search allocates";
}

TEST_F(Design, ResamplingReadsTheCurveAtTheOutputRate) {
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

TEST_F(Design, AnOnsetBehindTheEndLeavesTheGateOpen) {
    designer->prepareFromImpulse(tests::Noise(responseLength), responseLength - 32);
    EXPECT_THAT(designer->gate, Each(1.0));
}

TEST_F(Design, LoudnessKeepsTheWeightsOfTheFirstRate) {
    for (const int32_t rate : {48000, 96000}) {
        designer->sampleRate = rate;
        tapsFor(-6.0, flat);
        EXPECT_NEAR(designer->measuredLoudness, 4.0, 1e-12);
        EXPECT_EQ(designer->bandWeight.firstBin, 27);  // 40 Hz
        EXPECT_EQ(designer->bandWeight.endBin, 16384);
    }
}

// Ripples so small that the rank of the equations is a matter of rounding: the last one gets a pole
// of radius 3.3 from LAPACK.
TEST_F(Design, IsStableWhateverRoundingLeavesOfAFlatFilter) {
    const auto hertz = IirFitter::comparisonFrequencies();
    const struct {
        double depthDb, rippleRate, clampDb;
    } cases[] = {{0.001, 3.0, -3.0}, {0.003, 11.0, -1.0}, {0.0003, 4.0, -6.0}};
    for (const auto& c : cases) {
        const auto words = wordsFor(c.clampDb, [&](int32_t k) {
            const double phase = c.rippleRate * std::log((k + 1) / 14.0);
            return std::pow(10.0, c.depthDb / 20.0 * std::sin(phase));
        });
        EXPECT_LT(LargestPoleRadius(words), 1.0) << c.depthDb;
        EXPECT_THAT(CascadeResponseDb(words, hertz, 48000), Each(DoubleNear(0.0, 0.005)));
    }
    const std::vector<int32_t> unity = wordsFor(0.0, flat);
    for (size_t i = 0; i < unity.size(); ++i) {
        EXPECT_EQ(unity[i], i % 5 == 0 ? 0x800000 : 0) << i;
    }
}

}  // namespace
}  // namespace tonvane
