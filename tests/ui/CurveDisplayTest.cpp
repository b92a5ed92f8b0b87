// The curves of a run on the plot.
#include <cmath>
#include <memory>

#include <gmock/gmock.h>

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

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
        values.ResponseIsCsv = response.ends_with(".csv");
        values.ResponseFilePath = response.empty() ? "" : tests::GoldenPath(response);
        run = std::make_unique<TuningRun>(values, messages);
        run->InitTuningState();
        plot.record = run->curves[0];
    }
    // The colours of the pens of the curves, and the handles.
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
    // A PNG of the dialog's plot in quarters of a pixel.
    [[nodiscard]] std::string png(const ShownCurves& shown) {
        CairoCanvas device(750 * 4, 234 * 4, 44.0, 4);
        GraphHost nobody;
        CCurveGraphWindow window(nobody, values.TargetCurveKind);
        SetUpPlot(window);
        window.record = run->curves[0];
        window.Create(device, 750 * 4, 234 * 4, 4);
        RedrawCurves(*run, values, shown, window);
        window.Paint(device);
        return device.png();
    }

    ProgramValues values;
    tests::RecordingMessages messages;
    std::unique_ptr<TuningRun> run;
    tests::RecordingCanvas canvas;
    GraphHost host;
    CCurveGraphWindow plot{host, values.TargetCurveKind};
};

constexpr ShownCurves allCurves{1, 1, 1, 1, 1, 1, 1, 1};
constexpr Rectangle plotArea{56, 8, 735, 211};

TEST_F(Display, LooksLikeTheReferencesPictures) {
    start("small48.qsr");
    tests::ExpectLikeReference(png({}), "three.png", plotArea, 40, 30);
    tests::ExpectLikeReference(png(allCurves), "all.png", plotArea, 40, 120);
}

TEST_F(Display, DrawsTheCurvesInTheirOrderAndColours) {
    start("small48.qsr");
    EXPECT_THAT(drawn(allCurves),
                ElementsAre("000000 2", "00C000 1", "008000 1", "FF0000 2", "C000FF 2", "0000FF 2",
                            "FF008F 2", "80C000 2", "FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF",
                            "FFFFFF", "FFFFFF", "FFFFFF", "80C000", "80C000"));
    // Undetermined check boxes: the curves without their handles.
    ShownCurves undetermined;
    undetermined.showTarget = undetermined.showWeight = 2;
    undetermined.showSpec2 = undetermined.showFilter2 = 0;
    EXPECT_THAT(drawn(undetermined), ElementsAre("FF008F 2", "80C000 2"));
    run->responseAnalyzer.valid = false;
    EXPECT_EQ(drawn(allCurves).size(), 2U + 9U);
}

TEST_F(Display, WithoutAResponseThereAreTheTargetAndThePassbandOnly) {
    start("");
    EXPECT_EQ(drawn(allCurves).size(), 2U + 9U);
    EXPECT_THAT(ResultsRow(*run), ElementsAre("LTop", "", "", "", ""));
    run->responseAnalyzer.polarity = 0;
    run->responseAnalyzer.valid = true;  // loaded, but not yet designed
    run->responseAnalyzer.response.spectrum.resize(responseBins);
    EXPECT_EQ(ResultsRow(*run)[1], "??");
    EXPECT_THAT(drawn(allCurves), testing::Contains("000000 2"));
    EXPECT_THAT(drawn(allCurves), testing::Not(testing::Contains("0000FF 2")));
}

// Where the last point of each curve lies, with a rate of its own for measuring, filter and table.
TEST_F(Display, EachCurveHasItsOwnSpacing) {
    start("small48.qsr");
    run->graphHighHz = 100000;
    run->measurement.sampleRate = 44100;
    values.SampleRateTable[0] = 32000;
    values.CsvBinSpacing = 1.25;
    const struct {
        int32_t ShownCurves::*state;
        double impulseHz;  // of the last point of an impulse response's curve
        double tableHz;
    } cases[] = {
        {&ShownCurves::showSpec1, 22050.0, 16384 * 1.25},
        {&ShownCurves::showMixed, 22050.0, 22050.0},
        {&ShownCurves::showMixed2, 22050.0, 22050.0},
        {&ShownCurves::showSpec2, 22050.0, 16384 * 1.25},
        {&ShownCurves::showFilter, 16000.0, 16000.0},
        {&ShownCurves::showFilter2, 16000.0, 16384 * 1.25 * 32000.0 / 44100.0},
        {&ShownCurves::showTarget, 22050.0, 22050.0},
        {&ShownCurves::showWeight, 22050.0, 22050.0},
    };
    for (const auto& c : cases) {
        ShownCurves one{0, 0, 0, 0, 0, 0, 0, 0};
        one.*c.state = 1;
        for (const bool isTable : {false, true}) {
            values.ResponseIsCsv = isTable;
            drawn(one);
            const double hertz = isTable ? c.tableHz : c.impulseHz;
            const double pixel = 678.0 * std::log10(hertz / 20.0) / std::log10(100000.0 / 20.0);
            EXPECT_NEAR(canvas.lastLines().back().to.x, pixel, 1.0) << hertz;
        }
    }
    // No table, but its spacing: everything at the left edge.
    values.CsvBinSpacing = 0.0;
    ShownCurves measured;
    measured.showTarget = measured.showFilter2 = 0;
    drawn(measured);
    for (const Segment& stroke : canvas.lastLines()) {
        EXPECT_LE(std::max(stroke.from.x, stroke.to.x), 0);
    }
}

TEST_F(Display, AnEditRedrawsAtEachStepAndDesignsWhenItIsLetGo) {
    start("small48.qsr");
    CurveDisplay display(*run, values, plot);
    const std::vector<int32_t> words = run->iirFitter.coefficientWords;
    plot.record.points[3] = {1300, -5};
    display.ApplyCurveEdit(false);
    EXPECT_EQ(run->curves[0].points[3], (CurvePoint{1300, -5}));
    EXPECT_EQ(run->iirFitter.coefficientWords, words);
    // Of the product of shelves, worked out apart; point 111 lies at 1300.8 Hz.
    EXPECT_NEAR(10.0 * std::log10(run->eqDesigner.targetPower[111]), -6.124112477607666, 1e-9);
    EXPECT_THAT(canvas.take(), testing::Contains("2 pen FF008F 2"));
    EXPECT_EQ(plot.handleRects[3].top, -plot.yAxis.ToPixel(-5.0) - 6);
    display.ApplyCurveEdit(true);
    EXPECT_NE(run->iirFitter.coefficientWords, words);
}

TEST_F(Display, APictureWithoutRoomForItsPlotIsRefused) {
    start("port44.qsr");
    PlotPicture picture;
    picture.caption = std::string(5000, '\xFF');
    EXPECT_THAT(PlotSvg(*run, values, picture), HasSubstr("height=\"300px\""));
    for (int i = 0; i < 1000; ++i) {
        picture.caption.insert(0, "words ");
    }
    EXPECT_THAT(PlotSvg(*run, values, picture), HasSubstr("height=\"300px\""));
    picture.height = 190;
    EXPECT_THROW(PlotSvg(*run, values, picture), std::runtime_error);
    picture.caption.clear();
    EXPECT_THAT(PlotPng(*run, values, picture), testing::StartsWith("\x89PNG"));
    picture.width = 200;
    EXPECT_THROW(PlotPdf(*run, values, picture), std::runtime_error);
}

}  // namespace
}  // namespace tonvane
