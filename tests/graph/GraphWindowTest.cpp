// What a plot draws, call by call, and the strokes of its curves.
#include <limits>

#include <gmock/gmock.h>

#include "graph/GraphWindow.h"
#include "graph/RecordingCanvas.h"
#include "transform/ComplexVector.h"

namespace tonvane {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Calls = std::vector<std::string>;

class GraphWindow : public testing::Test {
  protected:
    // The plot's area is 300 by 100 pixels.
    GraphWindow() {
        plot.backgroundColor = 0xBFE9EE;
        plot.gridColor = 0x606060;
        plot.Create(canvas, 372, 132);
        plot.yAxis.scale = decibelScale;
        plot.yAxis.SetFixedRange(-40.0, 10.0, 5, 2);
        canvas.take();
    }
    // The calls of a grid that begin with a word.
    Calls gridOf(const std::string& word) {
        plot.DrawGrid();
        Calls calls = canvas.take();
        std::erase_if(calls, [&](const std::string& call) { return !call.starts_with(word); });
        return calls;
    }

    tests::RecordingCanvas canvas;
    GraphHost host;
    CGraphWindow plot{host};
};

TEST_F(GraphWindow, ALogarithmicGridLabelsOneTwoThreeAndFive) {
    plot.xAxis.scale = logScale;
    plot.xAxis.SetRange(20.0, 2000.0);  // 150 pixels a decade
    // 150*log10(f/20), and -40 .. 10 dB at 2 pixels a dB.
    EXPECT_THAT(
        gridOf("1 text"),
        ElementsAre("1 text '20 ' below 0,4 606060", "1 text '30 ' below 26,4 606060",
                    "1 text '50 ' below 59,4 606060", "1 text '100 ' below 104,4 606060",
                    "1 text '200 ' below 150,4 606060", "1 text '300 ' below 176,4 606060",
                    "1 text '500 ' below 209,4 606060", "1 text '1k' below 254,4 606060",
                    "1 text '2k' below 300,4 606060", "1 text '-40 ' left of -4,8 606060",
                    "1 text '-30 ' left of -4,-12 606060", "1 text '-20 ' left of -4,-32 606060",
                    "1 text '-10 ' left of -4,-52 606060", "1 text '0 ' left of -4,-72 606060",
                    "1 text '10 ' left of -4,-92 606060"));
    EXPECT_THAT(gridOf("1 fill"), ElementsAre("1 fill -56,-108..316,24 BFE9EE"));
    EXPECT_EQ(gridOf("").back(), "2 copy 1");
}

TEST_F(GraphWindow, SnappedAxesSpanTheirTicksAndUnsnappedOnesSkipTicksOutside) {
    plot.xAxis.SetRange(5.0, 95.0);  // steps of 20, from 0 to 100
    EXPECT_THAT(gridOf("1 text"), AllOf(Contains("1 text '20 ' below 50,4 606060"),
                                        Not(Contains(testing::HasSubstr("'0 ' below")))));
    EXPECT_THAT(gridOf("1 line"), Contains("1 line 300,-100 300,0"));
    plot.xAxis.snapToTicks = true;
    plot.yAxis.snapToTicks = true;
    EXPECT_THAT(gridOf("1 text"), testing::IsSupersetOf({"1 text '0 ' below 0,4 606060",
                                                         "1 text '20 ' below 60,4 606060",
                                                         "1 text '100 ' below 300,4 606060"}));
    EXPECT_EQ(gridOf("1 line").size(), 11U + 11U);  // ticks of 10 and of 5 dB, and no frame
}

TEST_F(GraphWindow, CurvesAreClippedStrokesInTheAxissScale) {
    plot.xAxis.scale = logScale;
    plot.xAxis.SetRange(10.0, 1000.0);
    const std::vector<Segment> strokes{{{0, -80}, {0, -80}}, {{0, -80}, {150, -40}}};
    plot.DrawCurveUniform(10.0, 90.0, std::vector{0.0, -20.0}, 0x0000FF, 2);
    EXPECT_THAT(canvas.take(),
                ElementsAre("2 pen 0000FF 2", "2 clip 0,-100..301,1", "2 lines", "2 end clip"));
    EXPECT_EQ(canvas.lastLines(), strokes);
    // The same levels as powers and as amplitudes.
    plot.DrawCurveFromValues(std::vector{1.0, -0.01}, 10.0, 90.0, 0, 1);
    EXPECT_EQ(canvas.lastLines(), strokes);
    plot.DrawCurveFromBins(ComplexVector{{0.6, -0.8}, {0.0, 0.1}}, 10.0, 90.0, 0, 1);
    EXPECT_EQ(canvas.lastLines(), strokes);
    plot.yAxis.scale = linearScale;
    plot.DrawCurveFromBins(ComplexVector{{0.0, 99.0}, {-20.0, 99.0}}, 10.0, 90.0, 0, 1);
    EXPECT_EQ(canvas.lastLines(), strokes);
    canvas.take();
    plot.DrawCurveFromValues({}, 10.0, 90.0, 0, 1);
    EXPECT_THAT(canvas.take(), IsEmpty());
}

TEST_F(GraphWindow, AColumnTakesTwoStrokesForAnyNumberOfPoints) {
    constexpr int32_t far = CGraphAxis::farthest;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    plot.xAxis.SetFixedRange(0.0, 300.0, 3, 1);
    // Four points in a column. What is no number lies below everything.
    const std::vector levels{0.0, -10.0, 10.0, -20.0, -10.0, nan, -10.0, 0.0, infinity};
    const std::vector powers{1.0, -0.1, 10.0, -0.01, 0.1, nan, 0.0, 1.0, infinity};
    const std::vector<Segment> strokes{
        {{0, -100}, {0, -40}}, {{0, -40}, {1, -60}}, {{1, -80}, {1, far}}, {{1, -80}, {2, -far}}};
    plot.DrawCurveUniform(0.0, 0.25, levels, 0, 1);
    EXPECT_EQ(canvas.lastLines(), strokes);
    plot.DrawCurveFromValues(powers, 0.0, 0.25, 0, 1);
    EXPECT_EQ(canvas.lastLines(), strokes);
    // The last of all points is always led to.
    plot.DrawCurveUniform(0.0, 0.25, std::span(levels).first(8), 0, 1);
    EXPECT_EQ(canvas.lastLines().back(), (Segment{{1, -60}, {1, -80}}));
    plot.DrawCurveUniform(0.0, 0.25, std::span(levels).first(1), 0, 1);
    EXPECT_THAT(canvas.lastLines(), IsEmpty());
}

TEST_F(GraphWindow, EachCurveHasItsOwnColumns) {
    const struct {
        size_t count;
        double first, step, high;
        int32_t lastColumn;
    } curves[] = {{9, 0.0, 1.0, 300.0, 8},
                  {20, 0.0, 1.0, 300.0, 19},
                  {20, 5.0, 1.0, 300.0, 24},
                  {9, 0.0, 2.0, 300.0, 16},
                  {9, 0.0, 1.0, 150.0, 16}};
    for (const auto& c : curves) {
        plot.xAxis.SetFixedRange(0.0, c.high, 3, 1);
        plot.DrawCurveUniform(c.first, c.step, std::vector<double>(c.count), 0, 1);
        EXPECT_EQ(canvas.lastLines().back().to.x, c.lastColumn);
    }
}

}  // namespace
}  // namespace tonvane
