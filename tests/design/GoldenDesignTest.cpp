// The design chain against an independent program's figures: from the response to the words.
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "amplifier/FixedPoint.h"
#include "analysis/ResponseAnalyzer.h"
#include "design/EqDesigner.h"
#include "design/IirFitter.h"
#include "files/ResponseFile.h"
#include "files/TargetFile.h"
#include "support/Golden.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using nlohmann::json;

// One design of an impulse response, as the workflow runs it.
class GoldenDesign : public tests::WithFftTables,
                     public testing::WithParamInterface<tests::GoldenCase> {
  protected:
    GoldenDesign() {
        const int32_t rate = figures["measuringRate"];
        const std::string response = tests::GoldenPath(GetParam().response);
        analyzer->loadImpulse(rate, responseLength, ReadCheckedResponseFile(response).samples);
        designer->sampleRate = rate;
        TargetSettings target;
        LoadTargetFile(tests::GoldenPath(GetParam().target), target);
        designer->setTarget(target.curve, target.kind);
        designer->setTapCount(256);
        designer->gainClampDb = figures["gainClampDb"];
        designer->prepareFromImpulse(analyzer->response.time(), analyzer->delaySamples);
        designer->designFir(rate);
    }

    const json figures = tests::GoldenFigures(GetParam());
    std::unique_ptr<ResponseAnalyzer> analyzer = std::make_unique<ResponseAnalyzer>();
    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
};

void expectRelative(double actual, double expected, double tolerance, const std::string& what) {
    EXPECT_NEAR(actual, expected, tolerance * std::max(std::fabs(expected), 1e-300)) << what;
}

TEST_P(GoldenDesign, FirFollowsTheReference) {
    EXPECT_EQ(analyzer->timeMin, figures["timeMin"]);
    EXPECT_EQ(analyzer->timeMax, figures["timeMax"]);
    for (const auto& [name, curve] : {std::pair{"measuredPower_every64", &designer->measuredPower},
                                      {"targetPower_every64", &designer->targetPower},
                                      {"passband_every64", &designer->passband}}) {
        for (size_t i = 0; i < 33; ++i) {
            expectRelative((*curve)[64 * i], figures[name][i], 1e-9, name);
        }
    }
    for (size_t i = 0; i < 256; ++i) {
        EXPECT_NEAR(designer->firTaps[i], figures["firTaps"][i], 1e-10) << i;
    }
    for (const int32_t k : {0, 100, 2048}) {  // the curve that is drawn
        const auto bin = tests::PolynomialAt(designer->firTaps.first(256), k, designLength);
        EXPECT_LT(std::abs(designer->firSpectrum[k] - bin), 1e-10) << k;
    }
    ASSERT_EQ(figures["trials"].size(), 16U);
    for (const json& trial : figures["trials"]) {
        designer->trial(trial[0], std::pow(10.0, designer->gainClampDb / 20.0));
        expectRelative(designer->loudnessRatio, trial[1], 1e-9, "trial");
    }
}

TEST_P(GoldenDesign, FitFollowsTheReference) {
    for (const FitSolver solver : {FitSolver::lattice, FitSolver::lapack}) {
        const auto passes = MakeFitPasses(solver);
        std::vector<double> numerator(15), denominator(15);
        denominator[0] = 1.0;
        passes->start(designer->sampleRate, designer->firTaps.first(256), 14);
        for (const double tolerance : {1e-8, 1e-6, 1e-4}) {
            passes->run(numerator, denominator);
            const size_t pass = tolerance == 1e-8 ? 0 : tolerance == 1e-6 ? 1 : 2;
            expectRelative(passes->distance(numerator, denominator), figures["distances"][pass],
                           tolerance, "pass " + std::to_string(pass));
            for (size_t n = 0; n < 15 && pass == 0; ++n) {
                EXPECT_NEAR(denominator[n], figures["firstDenominator"][n], 1e-8) << n;
            }
        }
    }

    IirFitter fitter;
    fitter.configure(designer->sampleRate, designer->firTaps.first(256), 7, designLength,
                     designer->gainClampDb);
    fitter.fit();
    ASSERT_EQ(fitter.coefficientWords.size(), 35U);
    for (size_t i = 0; i < 35; ++i) {
        const int32_t word = fitter.coefficientWords[i];
        EXPECT_EQ(word & ~coefficientMask, 0);
        EXPECT_TRUE(i % 5 != 0 || word == fitter.coefficientWords[0]) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Impulse, GoldenDesign,
                         testing::Values(tests::GoldenCases()[0], tests::GoldenCases()[1]),
                         [](const auto& instance) { return instance.param.name.substr(0, 6); });

}  // namespace
}  // namespace tonvane
