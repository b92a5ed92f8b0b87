// What a plot is drawn on: the few drawing operations that it needs.
//
// Coordinates are whole pixels relative to the origin, y downward. A line of an odd width runs
// through the middles of its pixels; one of an even width along their upper left edges, so that
// horizontal and vertical lines are sharp in both.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace tonvane {

// Red in the low byte, then green, then blue.
using Color = uint32_t;

struct Point {
    int32_t x;
    int32_t y;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Segment {
    Point from;
    Point to;

    friend bool operator==(const Segment&, const Segment&) = default;
};

// Pixels from left to right - 1 and from top to bottom - 1.
struct Rectangle {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;

    [[nodiscard]] bool contains(Point p) const {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }

    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

enum class TextAnchor {
    topCenter,      // centred on the point, the line of text below it
    baselineRight,  // ends at the point, which lies on the baseline
    baselineLeft,   // begins at the point
};

class Canvas {
  public:
    virtual ~Canvas() = default;

    // An off-screen image of the same kind, to draw on and to copy from; origin at its upper left.
    [[nodiscard]] virtual std::unique_ptr<Canvas> makeImage(int32_t width,
                                                            int32_t height) const = 0;

    // Where (0, 0) lies from now on, in pixels from the upper left corner.
    virtual void setOrigin(Point fromUpperLeft) = 0;

    virtual void fillRectangle(const Rectangle& rectangle, Color color) = 0;

    // The pen of lines and outlines from now on.
    virtual void setPen(Color color, int32_t width) = 0;

    // Segments of any length and place, drawn as one: where they meet or cross, nothing is painted
    // twice. A segment without length draws nothing.
    virtual void drawLines(std::span<const Segment> segments) = 0;

    // UTF-8; what is none is drawn as question marks.
    virtual void drawText(Point at, TextAnchor anchor, Color color, std::string_view text) = 0;

    // Filled, with the pen's outline along the rectangle's edge; `corner` is the diameter of the
    // corners.
    virtual void roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) = 0;

    // Restricts lines to a rectangle, until the end of the restriction.
    virtual void clip(const Rectangle& rectangle) = 0;
    virtual void endClip() = 0;

    // Copies an image that makeImage of this kind has made onto the upper left corner.
    virtual void copyImage(const Canvas& image) = 0;
};

}  // namespace tonvane
