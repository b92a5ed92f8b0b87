// What a plot draws, call by call, and the strokes of its curves.
#include <algorithm>
#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "graph/CurveStrokes.h"
#include "graph/GraphWindow.h"
#include "graph/RecordingCanvas.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Calls = std::vector<std::string>;

class GraphWindow : public testing::Test {
  protected:
    // The plot's area is 300 by 100 pixels.
    void create() {
        plot.backgroundColor = 0xBFE9EE;
        plot.gridColor = 0x606060;
        plot.Create(canvas, 372, 132);
        plot.yAxis.scale = decibelScale;
        plot.yAxis.SetFixedRange(-40.0, 10.0, 5, 2);
        canvas.take();
    }
    [[nodiscard]] Calls drawn(const std::string& kind) {
        Calls calls;
        for (const std::string& call : all) {
            if (call.find(" " + kind + " ") == 1) {
                calls.push_back(call.substr(3 + kind.size()));
            }
        }
        return calls;
    }
    void drawGrid() {
        plot.DrawGrid();
        all = canvas.take();
    }

    tests::RecordingCanvas canvas;
    GraphHost host;
    CGraphWindow plot{host};
    Calls all;
};

TEST_F(GraphWindow, ALogarithmicGridLabelsOneTwoThreeAndFive) {
    create();
    plot.xAxis.scale = logScale;
    plot.xAxis.SetRange(20.0, 2000.0);  // 150 pixels a decade
    drawGrid();
    // 150*log10(f/20), and -40 .. 10 dB at 2 pixels a dB.
    EXPECT_THAT(
        drawn("text"),
        ElementsAre("'20 ' below 0,4 606060", "'30 ' below 26,4 606060", "'50 ' below 59,4 606060",
                    "'100 ' below 104,4 606060", "'200 ' below 150,4 606060",
                    "'300 ' below 176,4 606060", "'500 ' below 209,4 606060",
                    "'1k' below 254,4 606060", "'2k' below 300,4 606060",
                    "'-40 ' left of -4,8 606060", "'-30 ' left of -4,-12 606060",
                    "'-20 ' left of -4,-32 606060", "'-10 ' left of -4,-52 606060",
                    "'0 ' left of -4,-72 606060", "'10 ' left of -4,-92 606060"));
    EXPECT_EQ(all.front(), "1 fill -56,-108..316,24 BFE9EE");
    EXPECT_EQ(all.back(), "2 copy 1");
}

TEST_F(GraphWindow, SnappedAxesSpanTheirTicksAndUnsnappedOnesSkipTicksOutside) {
    create();
    plot.xAxis.SetRange(5.0, 95.0);  // steps of 20, from 0 to 100
    drawGrid();
    const Calls labels = drawn("text");
    EXPECT_THAT(labels, Contains("'20 ' below 50,4 606060"));
    EXPECT_THAT(labels, Not(Contains(testing::StartsWith("'0 ' below"))));
    EXPECT_THAT(drawn("line"), Contains("300,-100 300,0"));
    plot.xAxis.snapToTicks = true;
    plot.yAxis.snapToTicks = true;
    drawGrid();
    EXPECT_THAT(drawn("text"),
                testing::IsSupersetOf({"'0 ' below 0,4 606060", "'20 ' below 60,4 606060",
                                       "'100 ' below 300,4 606060"}));
    EXPECT_EQ(drawn("line").size(), 11U + 11U);  // ticks of 10 and of 5 dB, and no frame
}

TEST_F(GraphWindow, CurvesAreClippedStrokesInTheAxissScale) {
    create();
    plot.xAxis.scale = logScale;
    plot.xAxis.SetRange(10.0, 1000.0);
    plot.DrawCurveUniform(10.0, 90.0, std::vector{0.0, -20.0}, 0x0000FF, 2);
    EXPECT_THAT(canvas.take(),
                ElementsAre("2 pen 0000FF 2", "2 clip 0,-100..301,1", "2 lines", "2 end clip"));
    const std::vector<Segment> strokes{{{0, -80}, {0, -80}}, {{0, -80}, {150, -40}}};
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

// The strokes as a plain program draws them point by point.
std::vector<Segment> strokesByPoint(const std::vector<Point>& points) {
    std::vector<Segment> strokes;
    Point last = points[0];
    int32_t low = last.y;
    int32_t high = last.y;
    for (size_t i = 1; i < points.size(); ++i) {
        const Point p = points[i];
        if (i + 1 == points.size() || p.x != last.x) {
            strokes.push_back({{last.x, low}, {last.x, high}});
            strokes.push_back({last, p});
            low = high = p.y;
        } else {
            low = std::min(low, p.y);
            high = std::max(high, p.y);
        }
        last = p;
    }
    return strokes;
}

TEST_F(GraphWindow, ManyPointsTakeTwoStrokesAColumn) {
    create();
    plot.xAxis.scale = logScale;
    plot.xAxis.SetRange(20.0, 24000.0);
    std::vector<double> powers = tests::Noise(16385);
    powers[5000] = std::numeric_limits<double>::quiet_NaN();
    powers[6000] = 0.0;
    powers[7000] = std::numeric_limits<double>::infinity();
    const double step = 48000.0 / 32768;
    for (const size_t count : {size_t{16385}, size_t{16384}, size_t{2}, size_t{1}}) {
        std::vector<Point> points;
        for (size_t i = 0; i < count; ++i) {
            const double level = 10.0 * std::log10(std::fabs(powers[i]));
            points.push_back({plot.xAxis.ToPixel(std::log10(static_cast<double>(i) * step)),
                              -plot.yAxis.ToPixel(level)});
        }
        plot.DrawCurveFromValues(std::span(powers).first(count), 0.0, step, 0, 1);
        EXPECT_THAT(canvas.lastLines(), ElementsAreArray(strokesByPoint(points))) << count;
        EXPECT_LE(canvas.lastLines().size(), 2U * (300U + 20U));
    }
}

}  // namespace
}  // namespace tonvane
