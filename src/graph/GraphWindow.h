// A plot: two axes with their grid, and curves over it.
//
// It is drawn into images of the host window's size, from which the window is painted. Both have
// their origin at the lower left corner of the plot: x runs from 0 to xAxis.pixels, y from
// -yAxis.pixels up at the top to 0. To draw anew: set the ranges, DrawGrid, the curves, Invalidate.
// For one thread, but for Paint, which may be called by another.
#pragma once

#include <complex>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "graph/Canvas.h"
#include "graph/CurveStrokes.h"
#include "graph/GraphAxis.h"
#include "graph/GraphHost.h"

namespace tonvane {

class CGraphWindow {
  public:
    // The host outlives the plot.
    explicit CGraphWindow(GraphHost& host) : host_(host) {}
    virtual ~CGraphWindow() = default;
    CGraphWindow(const CGraphWindow&) = delete;
    CGraphWindow& operator=(const CGraphWindow&) = delete;

    // Makes the images for a window of this size, in pixels of `device`, which is asked for the
    // images now only. `displayUnit` is how many of them are one pixel of an ordinary display; all
    // margins, widths and distances are multiplied by it.
    void Create(const Canvas& device, int32_t windowWidth, int32_t windowHeight,
                int32_t displayUnit = 1);

    // A new size of the window: lengths of the axes and new, empty images.
    void Resize(const Canvas& device, int32_t windowWidth, int32_t windowHeight);

    // Replaces the whole plot by the background and the grid.
    void DrawGrid();

    // A curve through points at first, first + step, ... of the frequency axis (in its unit, not
    // its scale). Uniform: levels in the scale of the level axis. The others: powers, of complex
    // values their squared magnitude, when the level axis has decibels; on a linear one the value
    // or the real part as it is. A curve without points draws nothing and leaves the pen as it was.
    void DrawCurveUniform(double first, double step, std::span<const double> levels, Color color,
                          int32_t penWidth);
    void DrawCurveFromBins(std::span<const std::complex<double>> bins, double first, double step,
                           Color color, int32_t penWidth);
    void DrawCurveFromValues(std::span<const double> values, double first, double step, Color color,
                             int32_t penWidth);

    // Asks for the window to be painted.
    void Invalidate() { host_.invalidate(); }

    // Copies the plot to the window.
    void Paint(Canvas& window);

    int32_t width = 0;  // of the window, pixels
    int32_t height = 0;
    int32_t top = 8;  // margins, in pixels of an ordinary display
    int32_t bottom = 24;
    int32_t left = 56;
    int32_t right = 16;
    Color backgroundColor = 0xFFFFFF;
    Color gridColor = 0xFFFFFF;
    CGraphAxis xAxis;
    CGraphAxis yAxis;

  protected:
    [[nodiscard]] int32_t unit() const { return xAxis.unit; }
    [[nodiscard]] GraphHost& host() { return host_; }
    [[nodiscard]] Canvas& plotImage() { return *plotImage_; }

  private:
    // The columns of evenly spaced points, kept since every redraw asks for the same few.
    struct Columns {
        double first;
        double step;
        CGraphAxis axis;
        std::vector<int32_t> pixels;
    };

    void copyGridToPlot();
    void drawLogTicks();
    void drawLinearTicks(const CGraphAxis& axis, bool upright);
    void drawTick(bool upright, int32_t position, bool isMajor, double value);
    void drawFrame();
    void line(Point from, Point to, bool isMajor);
    std::span<const int32_t> columns(size_t count, double first, double step);
    void drawCurve(std::span<const double> values, LevelKind kind, double first, double step,
                   Color color, int32_t penWidth);

    GraphHost& host_;
    std::unique_ptr<Canvas> plotImage_;
    std::unique_ptr<Canvas> gridImage_;
    std::mutex plotLock_;
    std::vector<Columns> columns_;
    std::vector<double> powers_;
    std::vector<Segment> strokes_;
};

}  // namespace tonvane
