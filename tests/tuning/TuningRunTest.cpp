// A tuning run without a window, from the values of a command line to the files at its end.
#include <cmath>
#include <memory>

#include <gmock/gmock.h>

#include "amplifier/FixedPoint.h"
#include "design/CascadeResponse.h"
#include "files/TestFiles.h"
#include "support/Signals.h"
#include "transform/FftTables.h"
#include "tuning/DesignReport.h"
#include "tuning/GoldenValues.h"
#include "tuning/RecordingMessages.h"
#include "tuning/TuningRun.h"

namespace tonvane {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pointwise;

class TuningRunTest : public testing::Test {
  protected:
    void start() {
        InitFftTables(responseLength);
        run = std::make_unique<TuningRun>(values, messages);
        run->InitTuningState();
    }

    ProgramValues values;
    tests::RecordingMessages messages;
    std::unique_ptr<TuningRun> run;
};

class GoldenRun : public TuningRunTest, public testing::WithParamInterface<tests::GoldenCase> {
  protected:
    GoldenRun() {
        tests::SetGoldenValues(GetParam(), values);
        start();
    }

    std::vector<double> listed(const char* name) { return figures[name]; }

    const nlohmann::json figures = tests::GoldenFigures(GetParam());
};

// Elements of 0 are the same.
MATCHER_P(IsWithin, relativeTolerance, "") {
    const auto [actual, expected] = arg;
    return std::fabs(actual - expected) <= relativeTolerance * std::fabs(expected);
}

TEST_P(GoldenRun, HasTheReferencesFilterAndFigures) {
    EXPECT_THAT(messages.errors, IsEmpty());
    EXPECT_EQ(messages.states, (std::vector<std::string>{"1Analyzing Loaded Data ...", "1", "2"}));
    const DesignReport report = MakeDesignReport(*run, values);
    const auto dB = [&](const char* name) {
        return 10.0 * std::log10(figures[name].get<double>());
    };
    const struct {
        double actual, expected, tolerance;
    } compared[] = {{1.0 * report.sampleRate, figures["measuringRate"], 0.0},
                    {1.0 * report.delaySamples, figures["delaySamples"], 0.0},
                    {1.0 * report.polarity, figures["polarity"], 0.0},
                    {1.0 * report.cutoffHz, figures["cutoffHz"], 0.0},
                    {run->responseAnalyzer.timeMin, figures["timeMin"], 0.0},
                    {run->responseAnalyzer.timeMax, figures["timeMax"], 0.0},
                    {values.CsvBinSpacing, figures["csvBinSpacing"], 0.0},
                    {report.gainClampDb, figures["gainClampDb"], 0.0},
                    {report.loudnessDb, dB("measuredLoudness"), 1e-7},
                    {report.levelDb, dB("level"), 1e-7},
                    {report.loudnessRatioDb, 2.0 * dB("loudnessRatio"), 1e-7},
                    {report.fromFir.rmsDb, figures["cascadeRmsDb"], 0.01},
                    {report.fromFir.largestDb, figures["cascadeMaxDb"], 0.03},
                    {report.largestPoleRadius, figures["maxPole"], 0.002}};
    for (const auto& c : compared) {
        EXPECT_NEAR(c.actual, c.expected, c.tolerance) << "row " << &c - compared;
    }
    EXPECT_EQ(report.warnings.size(), report.chain.insideDb > 6.0 ? 1U : 0U);
    EXPECT_THAT(report.curves.frequency, Pointwise(DoubleNear(1e-5), listed("gridHz")));
    EXPECT_THAT(report.curves.fir, Pointwise(DoubleNear(2e-6), listed("firDb")));
}

TEST_P(GoldenRun, FollowsTheReferenceToTheTaps) {
    EqDesigner& designer = run->eqDesigner;
    for (const auto& [name, curve] : {std::pair{"measuredPower_every64", &designer.measuredPower},
                                      {"targetPower_every64", &designer.targetPower},
                                      {"passband_every64", &designer.passband}}) {
        std::vector<double> points;
        for (size_t i = 0; i < curve->size(); i += 64) {
            points.push_back((*curve)[i]);
        }
        EXPECT_THAT(points, Pointwise(IsWithin(1e-9), listed(name)));
    }
    const std::span<const double> taps = designer.firTaps.first(256);
    EXPECT_THAT(taps, Pointwise(DoubleNear(1e-10), listed("firTaps")));
    for (const int32_t k : {0, 100, 2048}) {  // the curve that is drawn
        const auto bin = tests::PolynomialAt(taps, k, designLength);
        EXPECT_LT(std::abs(designer.firSpectrum[k] - bin), 1e-10) << k;
    }
    for (const auto& [level, ratio] : figures["trials"].get<std::vector<std::array<double, 2>>>()) {
        designer.trial(level, std::pow(10.0, designer.gainClampDb / 20.0));
        EXPECT_NEAR(designer.loudnessRatio / ratio, 1.0, 1e-9);
    }
}

TEST_P(GoldenRun, FitsLikeTheReferenceByEitherSolver) {
    for (const FitSolver solver : {FitSolver::lattice, FitSolver::lapack}) {
        const auto passes = MakeFitPasses(solver);
        std::vector<double> b(15), a(15);
        a[0] = 1.0;
        passes->start(run->designRate, run->eqDesigner.firTaps.first(256), 14);
        for (const auto& [pass, tolerance] : {std::pair{0, 1e-8}, {1, 1e-6}, {2, 1e-4}}) {
            passes->run(b, a);
            const double expected = figures["distances"][pass];
            EXPECT_NEAR(passes->distance(b, a) / expected, 1.0, tolerance) << pass;
            if (pass == 0) {
                EXPECT_THAT(b, Pointwise(DoubleNear(1e-8), listed("firstNumerator")));
                EXPECT_THAT(a, Pointwise(DoubleNear(1e-8), listed("firstDenominator")));
            }
        }
        run->iirFitter.solver = solver;
        run->RunDesign();
        const std::vector<int32_t>& words = run->iirFitter.coefficientWords;
        EXPECT_THAT(CascadeResponseDb(words, listed("gridHz"), figures["measuringRate"]),
                    Pointwise(DoubleNear(0.02), listed("cascadeDb")));
        EXPECT_TRUE(HasPlainlyUsableWords(run->iirFitter));
        for (size_t i = 0; i < 35; ++i) {
            EXPECT_EQ(words[i] & ~coefficientMask, 0);
            EXPECT_TRUE(i % 5 != 0 || words[i] == words[0]) << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Case, GoldenRun, testing::ValuesIn(tests::GoldenCases()),
                         [](const auto& instance) { return instance.param.name.substr(0, 6); });

TEST_F(TuningRunTest, DesignsAtTheFilesRateAndFitsAtItsOwn) {
    tests::SetGoldenValues(tests::GoldenCases()[0], values);
    values.InputSampleRate = values.FilterSampleRate = 44100;
    start();
    EXPECT_EQ(run->eqDesigner.sampleRate, 48000);
    EXPECT_EQ(run->iirFitter.sampleRate, 44100);
    run->ChangeInputRate(5);
    EXPECT_THAT((std::vector{values.InputSampleRate, values.FilterSampleRate, run->designRate,
                             values.SampleRateTable[0], run->iirFitter.sampleRate}),
                testing::Each(96000));
}

TEST_F(TuningRunTest, AMovedTargetGivesWhatAFreshRunGivesAndAnotherResponseSomethingElse) {
    tests::SetGoldenValues(tests::GoldenCases()[0], values);
    start();
    values.DefaultTargetCurve.points[2].level += 3;
    run->ApplyCurveEdit(values.DefaultTargetCurve, true);
    const std::vector<int32_t> moved = run->iirFitter.coefficientWords;
    start();
    EXPECT_EQ(run->iirFitter.coefficientWords, moved);
    run->takeImpulse(48000, tests::Noise(responseLength));
    run->RunDesign();
    const std::vector<int32_t> ofNoise = run->iirFitter.coefficientWords;
    EXPECT_NE(ofNoise, moved);
    values.ResponseIsCsv = true;  // as the dialog takes it: without a gate
    run->RunDesign();
    EXPECT_NE(run->iirFitter.coefficientWords, ofNoise);
}

TEST_F(TuningRunTest, RefinedFilterIsTheOneThatIsShownPredictedAndSent) {
    tests::SetGoldenValues(tests::GoldenCases()[1], values);
    values.fitMethod = FitMethod::refined;
    start();
    ASSERT_TRUE(run->refinedFit);
    EXPECT_EQ(run->designedSections().data(), run->refinedFit->words.data());
    const ResponseAnalyzer& analyzer = run->responseAnalyzer;
    for (const int32_t i : {10, 100, 1500}) {
        const std::vector hertz{i * 44100.0 / designLength};
        const double level = CascadeResponseDb(run->designedSections(), hertz, 44100)[0];
        const auto through = analyzer.iirPrediction()[8 * i] / analyzer.response.spectrum[8 * i];
        EXPECT_NEAR(20.0 * std::log10(std::abs(through)), level, 0.01);
        EXPECT_NEAR(20.0 * std::log10(std::abs(run->fittedCurve()[i])), level + run->gainClampDb(),
                    0.01);
    }
}

TEST_F(TuningRunTest, WarnsOfAResponseOutsideThePassband) {
    values.ResponseIsCsv = false;
    values.InitialGainClamp = -6;
    start();
    std::vector<double> samples(responseLength);
    for (int32_t i = 0; i < responseLength; ++i) {  // a tone far above
        samples[i] = (i % 2 == 0 ? 1.0 : -1.0) * std::exp(-1e-7 * std::pow(i - 16384.0, 2));
    }
    run->takeImpulse(48000, samples);
    run->responseReady = true;
    run->RunDesign();
    const DesignReport report = MakeDesignReport(*run, values);
    EXPECT_THAT(SummaryText(report), HasSubstr("Warning: The response has almost nothing inside"));
    EXPECT_TRUE(report.isUsable() || !HasPlainlyUsableWords(run->iirFitter));
}

}  // namespace
}  // namespace tonvane
