// The plot with the target curve's handles on it, which the user moves with the mouse.
//
// The plot holds its own copy of the record. While a handle moves, the record is kept in order (its
// knots at least a ratio of 1.12 apart, its band edges not crossing), and the host is told of every
// change; the plot does not draw itself anew. Mouse positions are in pixels of the window.
#pragma once

#include <array>
#include <cstdint>

#include "design/TargetRecord.h"
#include "graph/GraphWindow.h"

namespace tonvane {

class CCurveGraphWindow : public CGraphWindow {
  public:
    static constexpr double knotRatio = 1.12;
    static constexpr int32_t bandEdgeLevel = -3;  // dB

    // Letting a handle go sets `targetCurveKind` to savedCurve; it outlives the plot.
    CCurveGraphWindow(GraphHost& host, int32_t& targetCurveKind)
        : CGraphWindow(host), targetCurveKind_(targetCurveKind) {}

    // Takes the record and places its handles on the present axes; one that would be cut by the
    // edge of the window, or lie beyond it, stays at that edge. Nothing is drawn.
    void SetRecord(const TargetRecord& newRecord);

    // Draws the visible handles over the curves, outlined in the present pen.
    void DrawHandles();

    // A move without the button lets go of the handle, whoever has had the button meanwhile.
    void OnLeftButtonDown(Point mouse);
    void OnMouseMove(Point mouse, bool leftPressed);
    void OnLeftButtonUp();

    // By keyboard: takes a handle up, unless one is held, and moves it as near to a point as it may
    // go; OnLeftButtonUp lets it go.
    void MoveHandle(int32_t index, CurvePoint to);

    // The handle at a point of the plot, 0 to 8; -1 for none. Hidden handles count.
    [[nodiscard]] int32_t HitTest(Point inPlot) const;

    bool editingEnabled = false;  // false: mouse events are ignored
    TargetRecord record = BuiltInTargetCurve;
    bool showKnots = true;
    bool showBandEdges = true;
    std::array<Rectangle, 9> handleRects{};  // as in the record: knots, then band edges
    int32_t dragIndex = -1;                  // 0 to 8 while a handle is held

  private:
    [[nodiscard]] Point toPlot(Point mouse) const;
    void drag(Point inPlot);
    void place(int32_t frequency, int32_t level);
    void tellOfMove();
    [[nodiscard]] int32_t allowedFrequency(int32_t frequency) const;

    int32_t& targetCurveKind_;
};

}  // namespace tonvane
