#include "ui/win32/GdiCanvas.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "platform/WideText.h"

namespace tonvane {

namespace {

constexpr const wchar_t* fontFace = L"Tahoma";
constexpr double fullCoverage = 255.0;

OwnedFont makeFont(int32_t pixels) {
    return OwnedFont(CreateFontW(-pixels, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                 OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                                 DEFAULT_PITCH | FF_SWISS, fontFace));
}

// The distance of a point from a rectangle with round corners: negative inside.
double distanceFrom(const Rectangle& r, double inset, double radius, double x, double y) {
    const double halfWidth = (r.right - r.left) / 2.0 - inset - radius;
    const double halfHeight = (r.bottom - r.top) / 2.0 - inset - radius;
    const double dx = std::abs(x - (r.left + r.right) / 2.0) - halfWidth;
    const double dy = std::abs(y - (r.top + r.bottom) / 2.0) - halfHeight;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) -
           radius;
}

uint32_t coverage(double inside) {
    return static_cast<uint32_t>(std::lround(std::clamp(inside + 0.5, 0.0, 1.0) * fullCoverage));
}

}  // namespace

GdiCanvas::GdiCanvas(int32_t width, int32_t height, int32_t fontPixels)
    : fontPixels_(fontPixels), font_(makeFont(fontPixels)), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the first row is the topmost
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!dc_ || !bitmap_) {
        throw std::runtime_error("There is no memory for the plot.");
    }
    rows_ = {static_cast<uint32_t*>(bits), width, height, width};
    SelectObject(dc_.get(), bitmap_.get());
    SelectObject(dc_.get(), font_.get());
    SetBkMode(dc_.get(), TRANSPARENT);
}

std::unique_ptr<Canvas> GdiCanvas::makeImage(int32_t width, int32_t height) const {
    return std::make_unique<GdiCanvas>(width, height, fontPixels_);
}

Rectangle GdiCanvas::placed(const Rectangle& r) const {
    return {r.left + origin_.x, r.top + origin_.y, r.right + origin_.x, r.bottom + origin_.y};
}

void GdiCanvas::setOrigin(Point fromUpperLeft) {
    origin_ = fromUpperLeft;
}

void GdiCanvas::fillRectangle(const Rectangle& rectangle, Color color) {
    rows_.fill(placed(rectangle), PixelOf(color));
}

void GdiCanvas::setPen(Color color, int32_t width) {
    penColor_ = color;
    penWidth_ = width;
}

void GdiCanvas::drawLines(std::span<const Segment> segments) {
    const Rectangle whole{0, 0, rows_.width, rows_.height};
    painter_.draw(rows_, clip_ ? placed(*clip_) : whole, origin_, segments, penColor_, penWidth_);
}

void GdiCanvas::drawText(Point at, TextAnchor anchor, Color color, std::string_view text) {
    const std::wstring wide = Widen(text);
    UINT align = TA_BASELINE | TA_LEFT;
    if (anchor == TextAnchor::topCenter) {
        align = TA_TOP | TA_CENTER;
    } else if (anchor == TextAnchor::baselineRight) {
        align = TA_BASELINE | TA_RIGHT;
    }
    SetTextAlign(dc_.get(), align);
    SetTextColor(dc_.get(), color);
    TextOutW(dc_.get(), at.x + origin_.x, at.y + origin_.y, wide.c_str(),
             static_cast<int>(wide.size()));
    GdiFlush();  // what follows may be painted here
}

void GdiCanvas::roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) {
    const Rectangle r = placed(rectangle);
    const double halfPen = penWidth_ / 2.0;  // the pen runs along the edge, inside
    const uint32_t inner = PixelOf(fill);
    const uint32_t outline = PixelOf(penColor_);
    for (int32_t y = std::max(r.top, 0); y < std::min(r.bottom, rows_.height); ++y) {
        for (int32_t x = std::max(r.left, 0); x < std::min(r.right, rows_.width); ++x) {
            const double away = distanceFrom(r, halfPen, corner / 2.0, x + 0.5, y + 0.5);
            uint32_t& pixel = rows_.row(y)[x];
            pixel = MixPixels(pixel, inner, coverage(-away));
            pixel = MixPixels(pixel, outline, coverage(halfPen - std::abs(away)));
        }
    }
}

void GdiCanvas::clip(const Rectangle& rectangle) {
    clip_ = rectangle;
}

void GdiCanvas::endClip() {
    clip_.reset();
}

void GdiCanvas::copyImage(const Canvas& image) {
    const PixelRows& from = dynamic_cast<const GdiCanvas&>(image).rows_;
    const int32_t width = std::min(from.width, rows_.width);
    for (int32_t y = 0; y < std::min(from.height, rows_.height); ++y) {
        std::copy_n(from.row(y), width, rows_.row(y));
    }
}

void GdiCanvas::copyTo(HDC device) const {
    BitBlt(device, 0, 0, rows_.width, rows_.height, dc_.get(), 0, 0, SRCCOPY);
}

std::span<const uint32_t> GdiCanvas::pixels() const {
    return {rows_.pixels, static_cast<size_t>(rows_.stride) * static_cast<size_t>(rows_.height)};
}

}  // namespace tonvane
