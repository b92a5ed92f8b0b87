#include "graph/CurveGraphWindow.h"

#include <algorithm>
#include <numbers>
#include <string>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr int32_t handleReach = 6;  // from the middle of a handle to its sides
constexpr int32_t handleCorner = 2;
constexpr Color knotColor = 0xFFFFFF;
constexpr Color bandEdgeColor = 0x80C000;

bool isBandEdge(int32_t index) {
    return index >= TargetRecord::lowEdge;
}

// The value at a pixel, limited to the ticks even where the plot spans something else.
double valueAt(const CGraphAxis& axis, int32_t pixel) {
    const double value = axis.spanLow() + (axis.spanHigh() - axis.spanLow()) * pixel / axis.pixels;
    return value < axis.tickLow ? axis.tickLow : value > axis.tickHigh ? axis.tickHigh : value;
}

}  // namespace

void CCurveGraphWindow::SetRecord(const TargetRecord& newRecord) {
    record = newRecord;
    const int32_t reach = handleReach * unit();
    const auto inWindow = [&](int32_t place, int32_t low, int32_t high) {
        return std::max(std::min(place, high - reach), low + reach);
    };
    for (size_t i = 0; i < record.points.size(); ++i) {
        const CurvePoint& point = record.points[i];
        const int32_t x = inWindow(xAxis.ToPixel(elementary::Log10(point.frequency)),
                                   -left * unit(), xAxis.pixels + right * unit());
        const int32_t y =
            inWindow(-yAxis.ToPixel(point.level), -yAxis.pixels - top * unit(), bottom * unit());
        handleRects[i] = {x - reach, y - reach, x + reach, y + reach};
    }
}

void CCurveGraphWindow::DrawHandles() {
    for (int32_t i = 0; i < std::ssize(handleRects); ++i) {
        if (isBandEdge(i) ? showBandEdges : showKnots) {
            plotImage().roundRectangle(handleRects[i], handleCorner * unit(),
                                       isBandEdge(i) ? bandEdgeColor : knotColor);
        }
    }
}

int32_t CCurveGraphWindow::HitTest(Point inPlot) const {
    const auto hit = std::ranges::find_if(
        handleRects, [&](const Rectangle& handle) { return handle.contains(inPlot); });
    return hit == handleRects.end() ? -1 : static_cast<int32_t>(hit - handleRects.begin());
}

Point CCurveGraphWindow::toPlot(Point mouse) const {
    return {mouse.x - left * unit(), mouse.y - (yAxis.pixels + top * unit())};
}

void CCurveGraphWindow::OnLeftButtonDown(Point mouse) {
    if (!editingEnabled) {
        return;
    }
    if (dragIndex == -1) {
        dragIndex = HitTest(toPlot(mouse));
    }
    if (dragIndex != -1) {
        host().captureMouse(true);
        host().setCursor(GraphCursor::move);
    }
}

void CCurveGraphWindow::OnMouseMove(Point mouse, bool leftPressed) {
    if (!editingEnabled) {
        return;
    }
    if (!leftPressed) {
        OnLeftButtonUp();
    }
    if (dragIndex == -1) {
        const int32_t hit = HitTest(toPlot(mouse));
        if (hit != -1 && (isBandEdge(hit) ? showBandEdges : showKnots)) {
            host().setCursor(GraphCursor::cross);
        }
        return;
    }
    drag(toPlot(mouse));
    tellOfMove();
}

void CCurveGraphWindow::tellOfMove() {
    const CurvePoint point = record.points[dragIndex];
    const bool isEdge = isBandEdge(dragIndex);
    host().curveChanged(false);
    const std::string hertz = "(" + std::to_string(point.frequency) + " Hz";
    host().statusText(isEdge ? hertz + ")" : hertz + ", " + std::to_string(point.level) + " dB)");
}

void CCurveGraphWindow::drag(Point inPlot) {
    const double position = valueAt(xAxis, inPlot.x);
    const double level = valueAt(yAxis, -inPlot.y);
    const int32_t frequency =
        elementary::TruncateToInt(elementary::Exp(position * std::numbers::ln10));
    place(frequency, elementary::TruncateToInt(level));
}

void CCurveGraphWindow::place(int32_t frequency, int32_t level) {
    TargetRecord edited = record;
    edited.points[dragIndex] = {allowedFrequency(frequency),
                                isBandEdge(dragIndex) ? bandEdgeLevel : level};
    SetRecord(edited);
}

void CCurveGraphWindow::MoveHandle(int32_t index, CurvePoint to) {
    if (!editingEnabled) {
        return;
    }
    if (dragIndex == -1) {
        dragIndex = index;
    }
    const double lowest = elementary::Exp(xAxis.tickLow * std::numbers::ln10);
    const double highest = elementary::Exp(xAxis.tickHigh * std::numbers::ln10);
    place(elementary::TruncateToInt(std::clamp<double>(to.frequency, lowest, highest)),
          elementary::TruncateToInt(std::clamp<double>(to.level, yAxis.tickLow, yAxis.tickHigh)));
    tellOfMove();
}

// A knot between two close neighbours follows the upper one.
int32_t CCurveGraphWindow::allowedFrequency(int32_t frequency) const {
    const auto& points = record.points;
    if (dragIndex == TargetRecord::lowEdge) {
        return std::min(frequency, points[TargetRecord::highEdge].frequency);
    }
    if (dragIndex == TargetRecord::highEdge) {
        return std::max(frequency, points[TargetRecord::lowEdge].frequency);
    }
    if (dragIndex > 0) {
        const double lowest = points[dragIndex - 1].frequency * knotRatio;
        frequency = std::max(frequency, elementary::TruncateToInt(lowest));
    }
    if (dragIndex < TargetRecord::knotCount - 1) {
        const double highest = points[dragIndex + 1].frequency / knotRatio;
        frequency = std::min(frequency, elementary::TruncateToInt(highest));
    }
    return frequency;
}

void CCurveGraphWindow::OnLeftButtonUp() {
    if (!editingEnabled || dragIndex == -1) {
        return;
    }
    dragIndex = -1;
    host().captureMouse(false);
    if (showKnots || showBandEdges) {
        targetCurveKind_ = savedCurve;
        host().curveChanged(true);
    }
    host().statusText("");
}

}  // namespace tonvane
