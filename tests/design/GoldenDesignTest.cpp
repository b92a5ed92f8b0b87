// The design chain against an independent program's figures: from the response to the words.
#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "amplifier/BiquadWords.h"
#include "amplifier/FixedPoint.h"
#include "analysis/ResponseAnalyzer.h"
#include "design/CascadeResponse.h"
#include "design/EqDesigner.h"
#include "design/IirFitter.h"
#include "files/TargetFile.h"
#include "support/Golden.h"
#include "transform/FftTables.h"

namespace tonvane {
namespace {

using nlohmann::json;

// One design of an impulse response, as the workflow runs it.
struct Design {
    explicit Design(const tests::GoldenCase& golden)
        : figures(tests::GoldenFigures(golden)),
          analyzer(std::make_unique<ResponseAnalyzer>()),
          designer(std::make_unique<EqDesigner>()) {
        const int32_t rate = figures["measuringRate"];
        const double gain = figures["gainClampDb"];
        const auto impulse = tests::GoldenImpulse(golden.response);
        analyzer->loadImpulse(rate, responseLength, impulse);
        designer->sampleRate = rate;
        TargetSettings target;
        LoadTargetFile(tests::GoldenPath(golden.target), target);
        designer->setTarget(target.curve, target.kind);
        designer->setTapCount(256);
        designer->gainClampDb = gain;
        designer->prepareFromImpulse(analyzer->response.time(), analyzer->delaySamples);
        designer->designFir(rate);
        fitter.configure(rate, designer->firTaps.first(256), 7, designLength, gain);
        fitter.equationObserver = [this](auto...) { passes.push_back(fitter.denominator[1]); };
        fitter.fit();
    }

    json figures;
    std::unique_ptr<ResponseAnalyzer> analyzer;
    std::unique_ptr<EqDesigner> designer;
    IirFitter fitter;
    std::vector<std::vector<double>> passes;  // the denominator each pass started from
};

Design& designOf(const tests::GoldenCase& golden) {
    static std::map<std::string, std::unique_ptr<Design>> designs;
    auto& design = designs[golden.name];
    if (!design) {
        InitFftTables(responseLength);
        design = std::make_unique<Design>(golden);
    }
    return *design;
}

void expectRelative(double actual, double expected, double tolerance, const std::string& what) {
    EXPECT_NEAR(actual, expected, tolerance * std::max(std::fabs(expected), 1e-300)) << what;
}

class GoldenDesign : public testing::TestWithParam<tests::GoldenCase> {};

TEST_P(GoldenDesign, AnalysisAndLevelSearchFollowTheReference) {
    const Design& design = designOf(GetParam());
    const json& figures = design.figures;
    EXPECT_EQ(design.analyzer->delaySamples, figures["delaySamples"]);
    EXPECT_EQ(design.analyzer->polarity, figures["polarity"]);
    EXPECT_EQ(design.analyzer->cutoffHz, figures["cutoffHz"]);
    EXPECT_EQ(design.analyzer->timeMin, figures["timeMin"]);
    EXPECT_EQ(design.analyzer->timeMax, figures["timeMax"]);
    expectRelative(design.designer->measuredLoudness, figures["measuredLoudness"], 1e-9,
                   "loudness");
    for (int i = 0; i < EqDesigner::searchPasses; ++i) {
        const auto& trial = design.designer->trials[i];
        expectRelative(trial.level, figures["trials"][i][0], 1e-9, "level " + std::to_string(i));
        expectRelative(trial.loudnessRatio, figures["trials"][i][1], 1e-9,
                       "ratio " + std::to_string(i));
    }
}

TEST_P(GoldenDesign, CurvesAndTapsFollowTheReference) {
    const Design& design = designOf(GetParam());
    const EqDesigner& designer = *design.designer;
    for (size_t i = 0; i < 33; ++i) {
        expectRelative(designer.measuredPower[64 * i], design.figures["measuredPower_every64"][i],
                       1e-9, "measured");
        expectRelative(designer.targetPower[64 * i], design.figures["targetPower_every64"][i], 1e-9,
                       "target");
        expectRelative(designer.passband[64 * i], design.figures["passband_every64"][i], 1e-9,
                       "passband");
    }
    for (size_t i = 0; i < 256; ++i) {
        EXPECT_NEAR(designer.firTaps[i], design.figures["firTaps"][i], 1e-10) << i;
    }
}

TEST_P(GoldenDesign, FirstPassesOfTheFitFollowTheReference) {
    const Design& design = designOf(GetParam());
    const std::vector<double>& first = design.passes[1];
    for (size_t n = 0; n < first.size(); ++n) {
        EXPECT_NEAR(first[n], design.figures["firstDenominator"][n], 1e-8) << n;
    }
    const double tolerances[] = {1e-8, 1e-6, 1e-4};
    for (size_t pass = 0; pass < 3; ++pass) {
        expectRelative(design.fitter.distances[pass], design.figures["distances"][pass],
                       tolerances[pass], "pass " + std::to_string(pass));
    }
}

TEST_P(GoldenDesign, SectionsHaveTheStructureOfTheReference) {
    const Design& design = designOf(GetParam());
    const auto& words = design.fitter.coefficientWords;
    ASSERT_EQ(words.size(), 35U);
    for (size_t i = 0; i < words.size(); ++i) {
        EXPECT_EQ(words[i] & ~coefficientMask, 0);
        if (i % wordsPerBiquad == 0) {
            EXPECT_EQ(words[i], words[0]);
        }
    }
    EXPECT_LT(LargestPoleRadius(words), 1.0);

    const auto expectOrder = [](const std::vector<double>& sections, int32_t realRoots) {
        std::vector<double> angles;
        for (size_t k = 0; k < 7; ++k) {
            const std::complex<double> discriminant =
                sections[3 * k + 1] * sections[3 * k + 1] / 4.0 - sections[3 * k + 2];
            const bool isReal = discriminant.real() >= 0.0;
            EXPECT_EQ(isReal, k >= static_cast<size_t>(7 - realRoots / 2)) << k;
            if (!isReal) {
                angles.push_back(std::arg(-sections[3 * k + 1] / 2.0 + std::sqrt(discriminant)));
            }
        }
        EXPECT_TRUE(std::ranges::is_sorted(angles));
    };
    expectOrder(design.fitter.numeratorSections, design.figures["realZeros"]);
    expectOrder(design.fitter.denominatorSections, design.figures["realPoles"]);
}

INSTANTIATE_TEST_SUITE_P(Impulse, GoldenDesign,
                         testing::Values(tests::GoldenCases()[0], tests::GoldenCases()[1]),
                         [](const auto& parameter) {
                             return std::string(parameter.param.response, 0,
                                                parameter.param.response.find('.'));
                         });

}  // namespace
}  // namespace tonvane
