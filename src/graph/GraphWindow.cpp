#include "graph/GraphWindow.h"

#include <algorithm>
#include <cmath>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr Color minorLighter = 0x404040;
constexpr Color allColors = 0xFFFFFF;
constexpr int32_t frequencyLabelBelow = 4;
constexpr int32_t levelLabelLeft = 4;
constexpr int32_t levelLabelBelow = 8;
constexpr double tickTolerance = 1e-9;  // of a decade
constexpr int32_t maxTicks = 10000;
constexpr size_t maxColumnSets = 8;

// The digits of a decade that have a label.
bool isLabelled(int32_t digit) {
    return digit == 1 || digit == 2 || digit == 3 || digit == 5;
}

bool sameColumns(const CGraphAxis& a, const CGraphAxis& b) {
    return a.pixels == b.pixels && a.scale == b.scale && a.spanLow() == b.spanLow() &&
           a.spanHigh() == b.spanHigh();
}

}  // namespace

void CGraphWindow::Create(const Canvas& device, int32_t windowWidth, int32_t windowHeight,
                          int32_t displayUnit) {
    xAxis.unit = displayUnit;
    yAxis.unit = displayUnit;
    Resize(device, windowWidth, windowHeight);
}

void CGraphWindow::Resize(const Canvas& device, int32_t windowWidth, int32_t windowHeight) {
    width = windowWidth;
    height = windowHeight;
    xAxis.pixels = width - (right + left) * unit();
    yAxis.pixels = height - (bottom + top) * unit();
    gridImage_ = device.makeImage(width, height);
    const Point origin{left * unit(), top * unit() + yAxis.pixels};
    gridImage_->setOrigin(origin);
    gridImage_->fillRectangle({-origin.x, -origin.y, width - origin.x, height - origin.y},
                              backgroundColor);
    std::unique_ptr<Canvas> plot = device.makeImage(width, height);
    plot->setOrigin(origin);
    {
        const std::lock_guard lock(plotLock_);
        plotImage_ = std::move(plot);
        plotImage_->copyImage(*gridImage_);
    }
    columns_.clear();
}

void CGraphWindow::copyGridToPlot() {
    plotImage_->copyImage(*gridImage_);
}

void CGraphWindow::Paint(Canvas& window) {
    const std::lock_guard lock(plotLock_);
    window.copyImage(*plotImage_);
}

void CGraphWindow::DrawGrid() {
    const Point origin{left * unit(), top * unit() + yAxis.pixels};
    gridImage_->fillRectangle({-origin.x, -origin.y, width - origin.x, height - origin.y},
                              backgroundColor);
    if (xAxis.scale == logScale) {
        drawLogTicks();
    } else {
        drawLinearTicks(xAxis, true);
    }
    drawLinearTicks(yAxis, false);
    drawFrame();
    copyGridToPlot();
}

void CGraphWindow::drawLogTicks() {
    int32_t digit = DecadeDigit(xAxis.tickLow);
    const double decade = std::floor(xAxis.tickLow + tickTolerance);
    if (!std::isfinite(decade) || !std::isfinite(xAxis.tickHigh)) {
        return;
    }
    double base = PowerOfTen(elementary::TruncateToInt(decade));
    for (int32_t count = 0; count < maxTicks; ++count) {
        const double value = digit * base;
        const double position = elementary::Log10(value);
        if (position > xAxis.tickHigh + tickTolerance) {
            return;
        }
        drawTick(true, xAxis.ToPixel(position), isLabelled(digit), value);
        base *= digit == 9 ? 10.0 : 1.0;
        digit = digit % 9 + 1;
    }
}

void CGraphWindow::drawLinearTicks(const CGraphAxis& axis, bool upright) {
    if (!(axis.tickStep > 0.0)) {
        return;
    }
    for (int32_t count = 0; count < maxTicks; ++count) {
        const double value = axis.tickLow + count * axis.tickStep;
        if (!(value <= axis.tickHigh + 0.5 * axis.tickStep)) {
            return;
        }
        const bool isMajor = axis.labelEvery > 0 && count % axis.labelEvery == 0;
        drawTick(upright, axis.ToPixel(value), isMajor, value);
    }
}

void CGraphWindow::drawTick(bool upright, int32_t position, bool isMajor, double value) {
    const CGraphAxis& axis = upright ? xAxis : yAxis;
    if (position < 0 || position > axis.pixels) {
        return;
    }
    if (isMajor) {
        const std::string label = axis.FormatLabel(value);
        if (upright) {
            gridImage_->drawText({position, frequencyLabelBelow * unit()}, TextAnchor::topCenter,
                                 gridColor, label);
        } else {
            gridImage_->drawText({-levelLabelLeft * unit(), -position + levelLabelBelow * unit()},
                                 TextAnchor::baselineRight, gridColor, label);
        }
    }
    if (upright) {
        line({position, -yAxis.pixels}, {position, 0}, isMajor);
    } else {
        line({0, -position}, {xAxis.pixels, -position}, isMajor);
    }
}

// A snapped axis is framed by its first and last ticks.
void CGraphWindow::drawFrame() {
    if (!xAxis.snapToTicks) {
        line({0, -yAxis.pixels}, {0, 0}, true);
        line({xAxis.pixels, -yAxis.pixels}, {xAxis.pixels, 0}, true);
    }
    if (!yAxis.snapToTicks) {
        line({0, -yAxis.pixels}, {xAxis.pixels, -yAxis.pixels}, true);
        line({0, 0}, {xAxis.pixels, 0}, true);
    }
}

void CGraphWindow::line(Point from, Point to, bool isMajor) {
    gridImage_->setPen(isMajor ? gridColor : (gridColor + minorLighter) & allColors, unit());
    const Segment segment{from, to};
    gridImage_->drawLines({&segment, 1});
}

std::span<const int32_t> CGraphWindow::columns(size_t count, double first, double step) {
    for (const Columns& kept : columns_) {
        if (kept.first == first && kept.step == step && kept.pixels.size() >= count &&
            sameColumns(kept.axis, xAxis)) {
            return std::span(kept.pixels).first(count);
        }
    }
    if (columns_.size() == maxColumnSets) {
        columns_.clear();
    }
    Columns made{first, step, xAxis, std::vector<int32_t>(count)};
    for (size_t i = 0; i < count; ++i) {
        const double value = first + static_cast<double>(i) * step;
        made.pixels[i] = xAxis.ToPixel(xAxis.scale == logScale ? elementary::Log10(value) : value);
    }
    columns_.push_back(std::move(made));
    return columns_.back().pixels;
}

void CGraphWindow::drawCurve(std::span<const double> values, LevelKind kind, double first,
                             double step, Color color, int32_t penWidth) {
    if (values.empty()) {
        return;
    }
    strokes_.clear();
    AppendCurveStrokes(columns(values.size(), first, step), values, kind, yAxis, strokes_);
    plotImage_->setPen(color, penWidth * unit());
    plotImage_->clip({0, -yAxis.pixels, xAxis.pixels + 1, 1});
    plotImage_->drawLines(strokes_);
    plotImage_->endClip();
}

void CGraphWindow::DrawCurveUniform(double first, double step, std::span<const double> levels,
                                    Color color, int32_t penWidth) {
    drawCurve(levels, LevelKind::position, first, step, color, penWidth);
}

void CGraphWindow::DrawCurveFromBins(std::span<const std::complex<double>> bins, double first,
                                     double step, Color color, int32_t penWidth) {
    const bool isPower = yAxis.scale == decibelScale;
    powers_.resize(bins.size());
    for (size_t i = 0; i < bins.size(); ++i) {
        powers_[i] = isPower ? elementary::Power(bins[i]) : bins[i].real();
    }
    drawCurve(powers_, isPower ? LevelKind::power : LevelKind::position, first, step, color,
              penWidth);
}

void CGraphWindow::DrawCurveFromValues(std::span<const double> values, double first, double step,
                                       Color color, int32_t penWidth) {
    const bool isPower = yAxis.scale == decibelScale;
    drawCurve(values, isPower ? LevelKind::power : LevelKind::position, first, step, color,
              penWidth);
}

}  // namespace tonvane
