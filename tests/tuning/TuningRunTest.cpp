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
using tests::GoldenCase;
using Texts = std::vector<std::string>;

class TuningRunTest : public testing::Test {
  protected:
    void start() {
        InitFftTables(responseLength);
        run = std::make_unique<TuningRun>(values, messages);
        run->InitTuningState();
    }
    [[nodiscard]] const std::vector<int32_t>& words() const {
        return run->iirFitter.coefficientWords;
    }

    ProgramValues values;
    tests::RecordingMessages messages;
    std::unique_ptr<TuningRun> run;
};

class GoldenRun : public TuningRunTest, public testing::WithParamInterface<GoldenCase> {};

TEST_P(GoldenRun, HasTheReferencesFilterAndFigures) {
    const GoldenCase& golden = GetParam();
    tests::SetGoldenValues(golden, values);
    start();
    EXPECT_THAT(messages.errors, IsEmpty());
    EXPECT_EQ(messages.states, (Texts{"1Analyzing Loaded Data ...", "1", "2"}));
    tests::ExpectGoldenResponse(words(), golden);

    const DesignReport report = MakeDesignReport(*run, values);
    const nlohmann::json figures = tests::GoldenFigures(golden);
    const auto dB = [&](const char* name) {
        return 10.0 * std::log10(figures[name].get<double>());
    };
    EXPECT_EQ(report.sampleRate, figures["measuringRate"]);
    EXPECT_EQ(report.hasTimeSignal, !golden.isCsv);
    EXPECT_EQ(report.delaySamples, figures["delaySamples"]);
    EXPECT_EQ(report.polarity, figures["polarity"]);
    EXPECT_EQ(report.cutoffHz, figures["cutoffHz"]);
    EXPECT_EQ(report.gainClampDb, figures["gainClampDb"]);
    EXPECT_NEAR(report.loudnessDb, dB("measuredLoudness"), 1e-7);
    EXPECT_NEAR(report.levelDb, dB("level"), 1e-7);
    EXPECT_NEAR(report.loudnessRatioDb, 2.0 * dB("loudnessRatio"), 1e-7);
    EXPECT_NEAR(report.fitRmsDb, figures["cascadeRmsDb"], 0.01);
    EXPECT_NEAR(report.fitLargestDb, figures["cascadeMaxDb"], 0.03);
    EXPECT_NEAR(report.largestPoleRadius, figures["maxPole"], 0.002);
    EXPECT_EQ(report.wrappedCoefficients, 0);
    EXPECT_LT(report.deviationAfterDb, report.deviationBeforeDb);
    EXPECT_TRUE(report.isFinite);
    EXPECT_THAT(report.warnings, IsEmpty());

    ASSERT_EQ(report.curves.fir.size(), figures["gridHz"].size());
    for (size_t i = 0; i < report.curves.fir.size(); ++i) {
        ASSERT_NEAR(report.curves.frequency[i], figures["gridHz"][i], 1e-5);
        ASSERT_NEAR(report.curves.fir[i], figures["firDb"][i], 2e-6);
    }
    ASSERT_EQ(report.sections.size(), 7U);
    for (const auto& s : report.sections) {
        const double coefficients[] = {s.b0, s.b1, s.b2, -s.a1, -s.a2};
        for (size_t i = 0; i < 5; ++i) {
            const int32_t word = s.words[i] >= 1 << 25 ? s.words[i] - (1 << 26) : s.words[i];
            EXPECT_NEAR(coefficients[i] * 8388608.0, word, 0.5);
        }
    }

    if (golden.isCsv) {
        EXPECT_EQ(values.CsvBinSpacing, figures["csvBinSpacing"]);
        std::vector<int32_t> runStarts;
        const auto& bins = run->responseAnalyzer.response.spectrum;
        for (int32_t k = 1; k < run->responseAnalyzer.bins; ++k) {
            if (bins[k] != bins[k - 1]) {
                runStarts.push_back(k);
            }
        }
        EXPECT_EQ(runStarts, figures["csvRunStarts"].get<std::vector<int32_t>>());
    }
}

INSTANTIATE_TEST_SUITE_P(Case, GoldenRun, testing::ValuesIn(tests::GoldenCases()),
                         [](const auto& instance) {
                             return instance.param.name.substr(0, instance.param.name.find('-'));
                         });

TEST_F(TuningRunTest, DesignsAtTheFilesRateAndFitsAtItsOwn) {
    tests::SetGoldenValues(tests::GoldenCases()[0], values);
    values.InputSampleRate = values.FilterSampleRate = 44100;
    start();
    EXPECT_EQ(run->responseAnalyzer.sampleRate, 48000.0);
    EXPECT_EQ(run->eqDesigner.sampleRate, 48000);
    EXPECT_EQ(run->iirFitter.sampleRate, 44100);
    run->ChangeInputRate(5);
    EXPECT_THAT((std::vector{values.InputSampleRate, values.FilterSampleRate, run->designRate,
                             values.SampleRateTable[0], run->iirFitter.sampleRate}),
                testing::Each(96000));
    EXPECT_EQ(run->eqDesigner.sampleRate, 48000);
}

TEST_F(TuningRunTest, WarnsOfAFilterThatCannotBeUsed) {
    const auto summaryOf = [&](const std::vector<double>& samples) {
        start();
        run->takeImpulse(48000, samples);
        run->responseReady = true;
        run->RunDesign();
        return SummaryText(MakeDesignReport(*run, values));
    };
    values.ResponseIsCsv = false;
    values.InitialGainClamp = -6;
    std::vector<double> samples(responseLength);
    EXPECT_THAT(summaryOf(samples), HasSubstr("Warning: The design did not give numbers"));

    for (int32_t i = 0; i < responseLength; ++i) {  // a tone far above the pass-band
        samples[i] = (i % 2 == 0 ? 1.0 : -1.0) * std::exp(-1e-7 * std::pow(i - 16384.0, 2));
    }
    EXPECT_THAT(summaryOf(samples), HasSubstr("Warning: The response has almost nothing inside"));

    values.InitialGainClamp = 0;
    EXPECT_THAT(summaryOf(tests::GoldenImpulse("small48.qsr")),
                HasSubstr("Warning: With a gain clamp of 0 dB"));
}

}  // namespace
}  // namespace tonvane
