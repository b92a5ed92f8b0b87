// The canvas on Cairo: pixels in memory, or a page of a document.
//
// On pixels, rectangles and lines are painted here and Cairo does the text and the handles; on a
// page everything stays vectors, the copies of images too. The font is the system's sans-serif.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "graph/Canvas.h"

namespace tonvane {

enum class DocumentKind { svg, pdf };

struct DocumentFormat {
    DocumentKind kind;
    int32_t width;  // of the page, in CSS pixels of 1/96 inch
    int32_t height;
    int32_t resolution;  // units of the canvas in a pixel of the page
    double fontSize;     // in units of the canvas
};

class CairoCanvas : public Canvas {
  public:
    // An image of its own, black. Text is fontSize high. With a resolution above 1, all sizes and
    // positions count in parts of a pixel, which makes curves smooth; single lines, text and
    // handles are moved to whole pixels. Throws std::runtime_error for a size that there is no
    // memory for.
    CairoCanvas(int32_t width, int32_t height, double fontSize, int32_t resolution = 1);

    // Draws on the caller's 0xAARRGGBB pixels (premultiplied, rows of `stride` pixels), which
    // outlive the canvas; everything drawn is opaque.
    CairoCanvas(uint32_t* pixels, int32_t width, int32_t height, int32_t stride, double fontSize);

    ~CairoCanvas() override;

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

    // How far a text reaches.
    [[nodiscard]] double textWidth(std::string_view text) const;

    // The image as the bytes of a PNG file; nothing for a page.
    [[nodiscard]] std::string png() const;

  private:
    friend std::string DrawDocument(DocumentFormat format,
                                    const std::function<void(CairoCanvas&)>& draw);

    struct Surface;
    explicit CairoCanvas(std::unique_ptr<Surface> surface);

    void drawOnPixels(std::span<const Segment> segments, const Rectangle& bounds);

    std::unique_ptr<Surface> surface_;
};

// The bytes of a document of one page that `draw` has drawn on. One drawing gives the same bytes at
// any time. Throws std::runtime_error if memory runs out.
std::string DrawDocument(DocumentFormat format, const std::function<void(CairoCanvas&)>& draw);

// The text with a question mark for every byte that is not part of a UTF-8 sequence.
std::string ValidUtf8(std::string_view text);

}  // namespace tonvane
