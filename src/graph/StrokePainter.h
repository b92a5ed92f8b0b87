// Antialiased strokes onto 32-bit pixels.
//
// A general stroker takes 2 to 10 ms for a curve that fills its columns up and down, since it sorts
// thousands of outlines; a plot redraws eight of them while the mouse moves. Here upright and level
// strokes are filled rectangles and slanted ones are coverage by the distance to their middle line.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "graph/Canvas.h"

namespace tonvane {

// Rows of 0xAARRGGBB pixels, opaque.
struct PixelRows {
    uint32_t* pixels;
    int32_t width;
    int32_t height;
    int32_t stride;  // pixels from a row to the next

    [[nodiscard]] uint32_t* row(int32_t y) const {
        return pixels + static_cast<std::ptrdiff_t>(y) * stride;
    }
    void fill(const Rectangle& rectangle, uint32_t pixel) const;
};

// A Color as an opaque pixel.
uint32_t PixelOf(Color color);

// What is seen where `coverage` of 255 parts of a pixel are painted over.
uint32_t MixPixels(uint32_t under, uint32_t over, uint32_t coverage);

// A line between two points that need not be whole pixels.
struct Line {
    double x0, y0, x1, y1;
};

// The part of a segment inside a rectangle that is wider by `margin` on all sides; nothing if it
// passes by.
std::optional<Line> ClipSegment(const Segment& segment, const Rectangle& rectangle, double margin);

class StrokePainter {
  public:
    // Draws the segments inside `clip`. Clip and origin are in pixels of the target, the segments
    // and their width in units of which `resolution` make a pixel. In whole pixels, upright and
    // level strokes are sharp and have square ends; all others have round ends.
    void draw(const PixelRows& target, const Rectangle& clip, Point origin,
              std::span<const Segment> segments, Color color, int32_t width,
              int32_t resolution = 1);

  private:
    void cover(const Line& line, double halfWidth, const Rectangle& clip);
    void paintCoverage(const PixelRows& target, uint32_t pixel);
    void include(int32_t y, int32_t left, int32_t right);

    struct RowRange {
        int32_t left;
        int32_t right;  // not above left: empty
    };
    std::vector<uint8_t> coverage_;  // of each pixel; all 0 between two calls
    std::vector<RowRange> used_;     // what of each row is not 0
    int32_t width_ = 0;
};

}  // namespace tonvane
