// A tuning run without a window, from the values of a command line to the files at its end.
#include <cmath>
#include <memory>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "transform/FftTables.h"
#include "tuning/DesignReport.h"
#include "tuning/GoldenValues.h"
#include "tuning/RecordingMessages.h"
#include "tuning/TuningRun.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

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

class GoldenRun : public TuningRunTest, public testing::WithParamInterface<tests::GoldenCase> {};

TEST_P(GoldenRun, HasTheReferencesFilterAndFigures) {
    const tests::GoldenCase& golden = GetParam();
    tests::SetGoldenValues(golden, values);
    start();
    EXPECT_THAT(messages.errors, IsEmpty());
    EXPECT_EQ(messages.states, (std::vector<std::string>{"1Analyzing Loaded Data ...", "1", "2"}));
    tests::ExpectGoldenResponse(run->iirFitter.coefficientWords, golden);

    const DesignReport report = MakeDesignReport(*run, values);
    const nlohmann::json figures = tests::GoldenFigures(golden);
    const auto dB = [&](const char* name) {
        return 10.0 * std::log10(figures[name].get<double>());
    };
    const struct {
        double actual, expected, tolerance;
    } compared[] = {{1.0 * report.sampleRate, figures["measuringRate"], 0.0},
                    {1.0 * report.delaySamples, figures["delaySamples"], 0.0},
                    {1.0 * report.polarity, figures["polarity"], 0.0},
                    {1.0 * report.cutoffHz, figures["cutoffHz"], 0.0},
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
    ASSERT_EQ(report.curves.fir.size(), figures["gridHz"].size());
    for (size_t i = 0; i < report.curves.fir.size(); ++i) {
        ASSERT_NEAR(report.curves.frequency[i], figures["gridHz"][i], 1e-5);
        ASSERT_NEAR(report.curves.fir[i], figures["firDb"][i], 2e-6);
    }
    if (golden.isCsv) {
        EXPECT_EQ(values.CsvBinSpacing, figures["csvBinSpacing"]);
        const auto& bins = run->responseAnalyzer.response.spectrum;
        std::vector<int32_t> runStarts;
        for (int32_t k = 1; k < run->responseAnalyzer.bins; ++k) {
            if (bins[k] != bins[k - 1]) {
                runStarts.push_back(k);
            }
        }
        EXPECT_EQ(runStarts, figures["csvRunStarts"].get<std::vector<int32_t>>());
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

TEST_F(TuningRunTest, WarnsOfAFilterThatCannotBeUsed) {
    const auto expectWarning = [&](const std::vector<double>& samples, const char* warning) {
        start();
        run->takeImpulse(48000, samples);
        run->responseReady = true;
        run->RunDesign();
        EXPECT_THAT(SummaryText(MakeDesignReport(*run, values)), HasSubstr(warning));
    };
    values.ResponseIsCsv = false;
    values.InitialGainClamp = -6;
    std::vector<double> samples(responseLength);
    for (int32_t i = 0; i < responseLength; ++i) {  // a tone far above the pass-band
        samples[i] = (i % 2 == 0 ? 1.0 : -1.0) * std::exp(-1e-7 * std::pow(i - 16384.0, 2));
    }
    expectWarning(samples, "Warning: The response has almost nothing inside");
    values.InitialGainClamp = 0;
    samples.assign(responseLength, 0.0);
    samples[32] = 1.0;
    expectWarning(samples, "Warning: With a gain clamp of 0 dB");
}

}  // namespace
}  // namespace tonvane
