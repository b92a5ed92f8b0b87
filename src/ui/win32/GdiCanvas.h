// The canvas on GDI: pixels in memory that GDI can draw on and copy from.
//
// Lines, rectangles and handles are painted here, as on every platform; GDI does the text, in the
// dialog's font. Throws std::runtime_error where Windows has no memory for an image.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "graph/Canvas.h"
#include "graph/StrokePainter.h"
#include "ui/win32/Handles.h"

namespace tonvane {

class GdiCanvas : public Canvas {
  public:
    // An image of its own, black. Text is `fontPixels` high.
    GdiCanvas(int32_t width, int32_t height, int32_t fontPixels);

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

    // Copies the image onto the upper left corner of a window or another device.
    void copyTo(HDC device) const;

    // Rows of 0x00RRGGBB pixels, the topmost first; the highest byte means nothing.
    [[nodiscard]] std::span<const uint32_t> pixels() const;

  private:
    [[nodiscard]] Rectangle placed(const Rectangle& r) const;

    int32_t fontPixels_;
    PixelRows rows_{};
    OwnedFont font_;
    OwnedBitmap bitmap_;
    OwnedDc dc_;  // has bitmap and font selected, and goes ahead of them
    Point origin_{0, 0};
    Color penColor_ = 0;
    int32_t penWidth_ = 1;
    std::optional<Rectangle> clip_;
    StrokePainter painter_;
};

}  // namespace tonvane
