// The minimum-phase filter and the search for its level.
#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "design/EqDesigner.h"
#include "support/Allocations.h"
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

    // A response with a broad rise of 10 dB at 1 kHz and a dip of 8 dB at 5 kHz.
    void prepareUneven() {
        ComplexVector spectrum(responseBins);
        for (int32_t k = 0; k < responseBins; ++k) {
            const double f = std::max(k, 1) * 48000.0 / responseLength;
            const double rise = 10.0 * std::exp(-2.0 * std::pow(std::log2(f / 1000.0), 2));
            const double dip = -8.0 * std::exp(-2.0 * std::pow(std::log2(f / 5000.0), 2));
            spectrum[k] = std::pow(10.0, (rise + dip) / 20.0);
        }
        designer->prepareFromSpectrum(spectrum);
    }

    std::span<const double> taps() { return designer->firTaps.first(designer->tapCount); }

    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
};

TEST_F(FirDesign, MinimumPhaseFindsTheFilterBehindItsPower) {
    struct Case {
        std::vector<double> b;
        std::vector<double> a;
        std::vector<double> minimumPhaseB;
    };
    const Case cases[] = {{{0.25}, {1.0}, {0.25}},
                          {{1.0, -0.5}, {1.0}, {1.0, -0.5}},
                          {{1.0, -2.0}, {1.0}, {2.0, -1.0}},  // its zero comes inside
                          {{1.0, 0.3}, {1.0, -1.2, 0.72}, {1.0, 0.3}},
                          {{1.0}, {1.0, -0.99}, {1.0}}};  // cut off at 256 taps
    for (const Case& c : cases) {
        DesignCurve power;
        for (int32_t i = 0; i < designPoints; ++i) {
            power[i] = std::norm(tests::PolynomialAt(c.b, i, designLength) /
                                 tests::PolynomialAt(c.a, i, designLength));
        }
        designer->minimumPhase(power);
        const auto expected = tests::ImpulseResponse(c.minimumPhaseB, c.a, 256);
        EXPECT_THAT(designer->firWork.samples.first(256),
                    testing::Pointwise(testing::DoubleNear(1e-12), expected));
        EXPECT_THAT(designer->firWork.time().subspan(256), Each(0.0));
        for (const int32_t k : {0, 1, 1000, 2048}) {
            const auto bin = designer->firWork.spectrum[k] * static_cast<double>(designLength);
            EXPECT_LT(std::abs(bin - tests::PolynomialAt(expected, k, designLength)), 1e-10);
        }
    }
}

TEST_F(FirDesign, AFlatResponseGivesAFlatFilterOfTheClampsHeight) {
    for (const double clamp : {-1.0, -6.0, -12.0}) {
        designer->gainClampDb = clamp;
        designer->prepareFromSpectrum(ComplexVector(responseBins, 3.0));
        designer->designFir(48000);
        const double height = std::pow(10.0, clamp / 20.0);
        EXPECT_NEAR(taps()[0], height, 3e-4 * height);
        EXPECT_THAT(taps().subspan(1), Each(DoubleNear(0.0, 1e-3 * height)));
    }
}

TEST_F(FirDesign, NothingIsCutAtAClampOfZero) {
    prepareUneven();
    designer->designFir(48000);
    EXPECT_NEAR(taps()[0], 1.0, 1e-9);
    EXPECT_THAT(taps().subspan(1), Each(DoubleNear(0.0, 1e-9)));
}

TEST_F(FirDesign, OnlyCutsAndFlattensWhatItCuts) {
    designer->gainClampDb = -6.0;
    prepareUneven();
    designer->designFir(48000);
    EXPECT_LE(*std::ranges::max_element(designer->filterPower), 1.0);

    EqDesigner& d = *designer;
    int32_t cutPoints = 0;
    for (int32_t i = 0; i < designPoints; ++i) {
        const double equalized = d.filterPower[i] * d.measuredPower[i];
        if (d.passband[i] > 0.9999 && d.filterPower[i] < 0.99) {
            EXPECT_NEAR(10.0 * std::log10(equalized / d.level), 0.0, 0.01) << i;
            ++cutPoints;
        }
    }
    EXPECT_GT(cutPoints, 100);
}

TEST_F(FirDesign, LoudnessGrowsWithTheLevelUpToTheClamp) {
    designer->gainClampDb = -6.0;
    prepareUneven();
    designer->designFir(48000);
    EXPECT_NEAR(tests::Decibels(designer->loudnessRatio), -6.0, 0.01);
    auto trials = designer->trials;
    std::ranges::sort(trials, {}, &EqDesigner::Trial::level);
    EXPECT_TRUE(std::ranges::is_sorted(trials, {}, &EqDesigner::Trial::loudnessRatio));
    EXPECT_LT(trials.front().loudnessRatio, trials.back().loudnessRatio);

    const int64_t before = tests::AllocationCount();
    designer->designFir(48000);
    EXPECT_EQ(tests::AllocationCount(), before) << "a search allocates";
}

TEST_F(FirDesign, ResamplingReadsTheCurveAtTheOutputRate) {
    for (int32_t i = 0; i < designPoints; ++i) {
        designer->filterPower[i] = 10.0 + i;
    }
    for (const int32_t rate : {24000, 44100, 48000, 96000}) {
        designer->resampleCurve(rate, 0.5);
        for (int32_t i = 0; i < designPoints; ++i) {
            const double position = i * (rate / 48000.0);
            if (position <= 2048.0) {
                ASSERT_NEAR(designer->designPower[i], 10.0 + position, 1e-9) << rate << " " << i;
            } else {
                ASSERT_EQ(designer->designPower[i], 0.25) << rate << " " << i;
            }
        }
    }
}

}  // namespace
}  // namespace tonvane
