// The curves of a run on the plot.
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "files/ResponseFile.h"
#include "files/TestFiles.h"
#include "graph/RecordingCanvas.h"
#include "graph/cairo/CairoCanvas.h"
#include "transform/FftTables.h"
#include "tuning/GoldenValues.h"
#include "tuning/RecordingMessages.h"
#include "ui/CurveDisplay.h"
#include "ui/Pictures.h"
#include "ui/PlotPicture.h"
#include "ui/ResultsRow.h"

namespace tonvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

// The reference programme's first case.
class Display : public testing::Test {
  protected:
    Display() {
        InitFftTables(responseLength);
        tests::SetGoldenValues(tests::GoldenCases()[0], values);
        SetUpPlot(plot);
        plot.Create(canvas, 750, 234);
        canvas.take();
    }
    void start(const std::string& response) {
        values.ResponseFilePath = response.empty() ? "" : tests::GoldenPath(response);
        run = std::make_unique<TuningRun>(values, messages);
        run->InitTuningState();
        plot.record = run->curves[0];
    }
    // The pens of the curves, and the colours of the handles.
    std::vector<std::string> drawn(const ShownCurves& shown) {
        RedrawCurves(*run, values, shown, plot);
        std::vector<std::string> result;
        for (const std::string& call : canvas.take()) {
            if (call.starts_with("2 pen ")) {
                result.push_back(call.substr(6));
            } else if (call.starts_with("2 round ")) {
                result.push_back(call.substr(call.rfind(' ') + 1));
            }
        }
        return result;
    }
    // Of a curve that is drawn alone.
    std::vector<Segment> strokesOf(int32_t ShownCurves::*curve) {
        ShownCurves one{0, 0, 0, 0, 0, 0, 0, 0};
        one.*curve = 1;
        drawn(one);
        return canvas.lastLines();
    }

    ProgramValues values;
    tests::RecordingMessages messages;
    std::unique_ptr<TuningRun> run;
    tests::RecordingCanvas canvas;
    GraphHost host;
    CCurveGraphWindow plot{host, values.TargetCurveKind};
};

constexpr ShownCurves allCurves{1, 1, 1, 1, 1, 1, 1, 1};

TEST_F(Display, LooksLikeTheReferencesPictures) {
    constexpr Rectangle plotArea{56, 8, 735, 211};
    start("small48.qsr");
    // A PNG of the dialog's plot in quarters of a pixel.
    const auto png = [&](const ShownCurves& shown) {
        CairoCanvas device(750 * 4, 234 * 4, 44.0, 4);
        plot.Create(device, 750 * 4, 234 * 4, 4);
        RedrawCurves(*run, values, shown, plot);
        plot.Paint(device);
        return device.png();
    };
    tests::ExpectLikeReference(png({}), "three.png", plotArea, 40, 30);
    tests::ExpectLikeReference(png(allCurves), "all.png", plotArea, 40, 120);
}

TEST_F(Display, DrawsWhatThereIsInItsOrderAndColours) {
    start("small48.qsr");
    EXPECT_THAT(drawn(allCurves),
                ElementsAre("000000 2", "00C000 1", "008000 1", "FF0000 2", "C000FF 2", "0000FF 2",
                            "FF008F 2", "80C000 2", "FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF",
                            "FFFFFF", "FFFFFF", "FFFFFF", "80C000", "80C000"));
    // Undetermined check boxes: the curves without their handles.
    EXPECT_THAT(drawn({0, 0, 2, 2, 0, 0, 0, 0}), ElementsAre("FF008F 2", "80C000 2"));
    run->responseAnalyzer.valid = false;
    EXPECT_THAT(drawn(allCurves), SizeIs(2 + 9));

    start("");
    run->responseAnalyzer.valid = true;  // loaded, but not yet designed
    run->responseAnalyzer.response.spectrum.resize(responseBins);
    EXPECT_EQ(ResultsRow(*run)[1], "??");
    EXPECT_THAT(drawn(allCurves),
                testing::AllOf(Contains("000000 2"), testing::Not(Contains("0000FF 2"))));
}

// A hundred pixels of the plot are a decibel.
TEST_F(Display, EachCurveHasTheReferencesLevels) {
    start("small48.qsr");
    plot.Create(canvas, 56 + 20000 + 16, 8 + 5000 + 24);
    const nlohmann::json figures = tests::GoldenFigures(tests::GoldenCases()[0]);
    const double hertz = figures["measuringRate"].get<double>() / 64.0;
    const auto power = [&](const std::vector<double>& terms) {
        std::complex<double> sum;
        for (size_t n = 0; n < terms.size(); ++n) {
            sum += std::polar(terms[n], -std::numbers::pi / 32.0 * static_cast<double>(n));
        }
        return std::norm(sum);
    };
    std::vector<double> samples(responseFileSamples);
    int32_t rate = 0;
    ASSERT_TRUE(ReadResponseFile(values.ResponseFilePath, rate, samples));
    const double response = power(samples);
    const double fir = power(figures["firTaps"]);
    const double biquads = power(figures["numerator"]) / power(figures["denominator"]);
    const double clampBack = std::pow(10.0, -figures["gainClampDb"].get<double>() / 10.0);
    const auto inFigures = [&](const char* name) { return figures[name][1].get<double>(); };
    const double wanted[] = {response,
                             response * fir * clampBack,
                             response * biquads * clampBack,
                             inFigures("measuredPower_every64"),
                             fir,
                             biquads,
                             inFigures("targetPower_every64"),
                             inFigures("passband_every64")};
    for (const CurveStyle& style : curveStyles) {
        const auto strokes = strokesOf(style.state);
        const int32_t column = plot.xAxis.ToPixel(std::log10(hertz));
        const auto stroke = std::ranges::find_if(
            strokes, [&](const Segment& s) { return s.from.x != column && s.to.x == column; });
        ASSERT_NE(stroke, strokes.end()) << style.name;
        EXPECT_NEAR(-40.0 - stroke->to.y / 100.0,
                    10.0 * std::log10(wanted[&style - curveStyles.data()]), 0.04)
            << style.name;
    }
}

// Where the last point of each curve lies, with a rate of its own for measuring, filter and table.
TEST_F(Display, EachCurveHasItsOwnSpacing) {
    start("small48.qsr");
    run->graphHighHz = 100000;
    run->measurement.sampleRate = 44100;
    values.SampleRateTable[0] = 32000;
    values.CsvBinSpacing = 1.25;
    constexpr double tableHz = 16384 * 1.25;
    constexpr double impulseEnds[] = {22050, 22050, 22050, 22050, 16000, 16000, 22050, 22050};
    constexpr double tableEnds[] = {tableHz, 22050, 22050, tableHz, 16000, tableHz * 32000 / 44100,
                                    22050,   22050};
    for (const CurveStyle& style : curveStyles) {
        for (const auto* ends : {impulseEnds, tableEnds}) {
            values.ResponseIsCsv = ends == tableEnds;
            const double hertz = ends[&style - curveStyles.data()];
            EXPECT_NEAR(strokesOf(style.state).back().to.x,
                        678.0 * std::log10(hertz / 20.0) / std::log10(100000.0 / 20.0), 1.0)
                << style.name << " to " << hertz;
        }
    }
    values.CsvBinSpacing = 0.0;  // no table: everything at the left edge
    EXPECT_LE(strokesOf(&ShownCurves::showSpec2).back().to.x, 0);
}

TEST_F(Display, APictureWithoutRoomForItsPlotIsRefused) {
    start("small48.qsr");
    PlotPicture picture;
    for (const char* word : {"\xFF", "words "}) {
        for (int i = 0; i < 1000; ++i) {
            picture.caption.insert(0, word);
        }
        EXPECT_THAT(PlotSvg(*run, values, picture), HasSubstr("height=\"300px\""));
    }
    picture.height = 190;
    EXPECT_THROW(PlotSvg(*run, values, picture), std::runtime_error);
    picture.caption.clear();
    EXPECT_THAT(PlotPng(*run, values, picture), testing::StartsWith("\x89PNG"));
    picture.width = 200;
    EXPECT_THROW(PlotPdf(*run, values, picture), std::runtime_error);
}

}  // namespace
}  // namespace tonvane
