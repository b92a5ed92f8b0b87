// An image of a page: what is drawn is kept as it was called and drawn again where it is copied to.
// (Cairo 1.16 has such a surface too, but loses its memory in SVG files.)
#pragma once

#include <functional>
#include <vector>

#include "graph/Canvas.h"

namespace tonvane {

class DrawingList : public Canvas {
  public:
    DrawingList(int32_t width, int32_t height) : width_(width), height_(height) {}

    [[nodiscard]] std::unique_ptr<Canvas> makeImage(int32_t width, int32_t height) const override;
    void setOrigin(Point fromUpperLeft) override;
    void fillRectangle(const Rectangle& rectangle, Color color) override;
    void setPen(Color color, int32_t width) override;
    void drawLines(std::span<const Segment> segments) override;
    void drawText(Point at, TextAnchor anchor, Color color, std::string_view text) override;
    void roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) override;
    void clip(const Rectangle& rectangle) override;
    void endClip() override;
    void copyImage(const Canvas& image) override;

    // Draws everything onto another canvas, whose origin, pen and clip are not kept.
    void drawOn(Canvas& canvas) const;

  private:
    using Call = std::function<void(Canvas&)>;

    // Forgets what has just been covered.
    void startOver();

    int32_t width_;
    int32_t height_;
    Point origin_{0, 0};
    Color penColor_ = 0;
    int32_t penWidth_ = 1;
    std::vector<Call> calls_;
};

}  // namespace tonvane
