// Handles of the target curve under the mouse.
#include <gmock/gmock.h>

#include "graph/HandleKeys.h"
#include "graph/RecordingCanvas.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

struct RecordingHost : GraphHost {
    void captureMouse(bool captured) override { calls.emplace_back(captured ? "hold" : "release"); }
    void setCursor(GraphCursor cursor) override {
        calls.emplace_back(cursor == GraphCursor::cross ? "cross" : "move");
    }
    void curveChanged(bool letGo) override { calls.emplace_back(letGo ? "let go" : "moving"); }
    void statusText(const std::string& text) override { calls.push_back("'" + text + "'"); }

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    std::vector<std::string> calls;
};

constexpr CurvePoint knotsAndEdges[] = {{50, 0},     {100, 3},  {150, -6}, {200, 0},  {1000, 5},
                                        {4000, -20}, {8000, 0}, {300, -3}, {2000, -3}};

class Drag : public testing::Test {
  protected:
    // 250 pixels a decade from 20 Hz, 4 pixels a dB from -40 to 10.
    Drag() {
        plot.Create(canvas, 56 + 750 + 16, 8 + 200 + 24);
        plot.xAxis.scale = logScale;
        plot.xAxis.SetRange(20.0, 20000.0);
        plot.yAxis.scale = decibelScale;
        plot.yAxis.SetFixedRange(-40.0, 10.0, 5, 2);
        plot.editingEnabled = true;
        plot.SetRecord(record);
        canvas.take();
    }
    // In the window: the pixel of a frequency, and of a level.
    [[nodiscard]] static Point at(double hertz, double level) {
        return {static_cast<int32_t>(56 + 250.0 * std::log10(hertz / 20.0)),
                static_cast<int32_t>(8 + 200 - 4.0 * (level + 40.0))};
    }
    // Takes up a handle, moves it, lets it go; where it is then.
    CurvePoint drag(int32_t index, Point to) {
        plot.SetRecord(record);
        plot.OnLeftButtonDown(at(record.points[index].frequency, record.points[index].level));
        EXPECT_EQ(plot.dragIndex, index);
        plot.OnMouseMove(to, true);
        plot.OnLeftButtonUp();
        return plot.record.points[index];
    }

    TargetRecord record{std::to_array(knotsAndEdges)};
    tests::RecordingCanvas canvas;
    RecordingHost host;
    int32_t kind = zeroCurve;
    CCurveGraphWindow plot{host, kind};
};

TEST_F(Drag, KeepsKnotsApartAndBandEdgesInOrder) {
    const struct {
        const char* what;
        int32_t index;
        Point to;
        CurvePoint result;
        int32_t tolerance;  // Hz; none where a neighbour decides
    } cases[] = {
        {"down to 1.12 times a neighbour", 4, {56 + 250, 8 + 40}, {224, 0}, 0},
        {"freely", 5, {56 + 500, 8 + 40}, {2000, 0}, 1},
        {"up to a neighbour over 1.12", 2, at(900.0, -6.0), {178, -6}, 0},
        {"the first knot down to the axis", 0, {-500, 8 + 40}, {20, 0}, 1},
        {"the last knot to the axis", 6, {5000, 8 + 40}, {20000, 0}, 1},
        {"above the plot", 4, {56 + 425, -300}, {1002, 10}, 1},
        {"below the plot", 4, {56 + 425, 3000}, {1002, -40}, 1},
        {"to -1.25 dB", 4, {56 + 425, 8 + 45}, {1002, -1}, 1},
        {"to 1.75 dB", 4, {56 + 425, 8 + 33}, {1002, 1}, 1},
        {"the low edge, at its level", 7, {56 + 250, 8}, {200, -3}, 1},
        {"the low edge to the high one", 7, at(9000.0, 0.0), {2000, -3}, 0},
        {"the high edge to the low one", 8, at(30.0, 0.0), {300, -3}, 0},
    };
    for (const auto& c : cases) {
        const CurvePoint result = drag(c.index, c.to);
        EXPECT_NEAR(result.frequency, c.result.frequency, c.tolerance) << c.what;
        EXPECT_EQ(result.level, c.result.level) << c.what;
    }
    record.points[1].frequency = 140;
    record.points[3].frequency = 160;
    EXPECT_EQ(drag(2, at(150.0, 0.0)).frequency, 142);  // 160/1.12, not 140*1.12
}

TEST_F(Drag, TellsTheHostStepByStep) {
    plot.OnMouseMove(at(1000.0, 5.0), false);
    EXPECT_THAT(host.take(), ElementsAre("cross"));
    plot.OnLeftButtonDown(at(1000.0, 5.0));
    EXPECT_THAT(host.take(), ElementsAre("hold", "move"));
    plot.OnMouseMove({56 + 500, 8 + 41}, true);
    EXPECT_THAT(host.take(), ElementsAre("moving", MatchesRegex("'\\([12][0-9]+ Hz, 0 dB\\)'")));
    EXPECT_EQ(kind, zeroCurve);
    plot.OnLeftButtonUp();
    EXPECT_THAT(host.take(), ElementsAre("release", "let go", "''"));
    EXPECT_EQ(kind, savedCurve);
    plot.OnLeftButtonUp();
    EXPECT_THAT(host.take(), IsEmpty());
    plot.OnLeftButtonDown(at(100.0, 3.0));
    plot.OnMouseMove({56 + 500, 8 + 100}, false);  // the button has gone up elsewhere
    EXPECT_THAT(host.take(), ElementsAre("hold", "move", "release", "let go", "''"));
    drag(8, {56 + 500, 8 + 41});
    EXPECT_THAT(host.take(), testing::Contains(MatchesRegex("'\\((1999|2000) Hz\\)'")));
}

TEST_F(Drag, KeysMoveTheChosenHandleInsideTheAxes) {
    HandleKeys keys(plot);
    const auto next = [&](int32_t step) {
        keys.chooseNext(step);
        return keys.chosen();
    };
    plot.showBandEdges = false;
    EXPECT_THAT((std::vector{keys.chosen(), next(1), next(1), next(-1), next(-1), next(1)}),
                ElementsAre(-1, 0, 1, 0, 6, 0));
    keys.choose(4);
    keys.move(1, 1, false);
    EXPECT_EQ(plot.record.points[4], (CurvePoint{1029, 6}));
    keys.move(-1, 0, true);
    EXPECT_EQ(plot.record.points[4], (CurvePoint{1028, 6}));
    EXPECT_EQ(next(1), 5);  // which lets go
    EXPECT_THAT(host.take(), ElementsAre("moving", "'(1029 Hz, 6 dB)'", "moving",
                                         "'(1028 Hz, 6 dB)'", "release", "let go", "''"));
    plot.MoveHandle(5, {50000, -50});
    EXPECT_EQ(plot.record.points[5], (CurvePoint{8000 * 100 / 112, -40}));
    plot.MoveHandle(4, {900, 30});  // the one that is held
    EXPECT_EQ(plot.record.points[5], (CurvePoint{1151, 10}));
    keys.choose(8);  // which is hidden
    keys.move(1, 1, false);
    EXPECT_EQ(plot.record.points[8], record.points[8]);
}

TEST_F(Drag, HiddenHandlesCanBeTakenUpButDoNotShowOrDesign) {
    plot.showKnots = false;
    plot.showBandEdges = false;
    plot.DrawHandles();
    EXPECT_THAT(canvas.take(), IsEmpty());
    plot.OnMouseMove(at(1000.0, 5.0), false);
    EXPECT_THAT(host.take(), IsEmpty());
    plot.OnLeftButtonDown(at(1000.0, 5.0));
    plot.OnLeftButtonUp();
    EXPECT_THAT(host.take(), ElementsAre("hold", "move", "release", "''"));
    EXPECT_EQ(kind, zeroCurve);
    plot.editingEnabled = false;
    plot.OnLeftButtonDown(at(1000.0, 5.0));
    EXPECT_EQ(plot.dragIndex, -1);
}

TEST_F(Drag, TheLowerHandleOfTwoIsHitInsideTwelvePixels) {
    record.points[5] = {1000, 5};
    record.points[7] = {20, 0};
    plot.SetRecord(record);
    EXPECT_EQ(plot.handleRects[7], (Rectangle{-6, -166, 6, -154}));
    const Rectangle& knot = plot.handleRects[4];
    EXPECT_EQ(plot.HitTest({knot.left, knot.top}), 4);
    EXPECT_EQ(plot.HitTest({knot.right - 1, knot.bottom - 1}), 4);
    EXPECT_EQ(plot.HitTest({knot.right, knot.top}), -1);
    EXPECT_EQ(plot.HitTest({knot.left, knot.bottom}), -1);
    EXPECT_EQ(plot.HitTest({0, -160}), 7);
    record.points[0] = {0, 40};  // beyond the window: at its edge, and no overflow
    record.points[6] = {30000, 0};
    plot.SetRecord(record);
    EXPECT_EQ(plot.handleRects[0], (Rectangle{-56, -208, -44, -196}));
    EXPECT_EQ(plot.handleRects[6], (Rectangle{754, -166, 766, -154}));
}

}  // namespace
}  // namespace tonvane
