#include "graph/DrawingList.h"

#include <string>

namespace tonvane {

std::unique_ptr<Canvas> DrawingList::makeImage(int32_t width, int32_t height) const {
    return std::make_unique<DrawingList>(width, height);
}

void DrawingList::startOver() {
    calls_.clear();
    setOrigin(origin_);
    setPen(penColor_, penWidth_);
}

void DrawingList::setOrigin(Point fromUpperLeft) {
    origin_ = fromUpperLeft;
    calls_.emplace_back([=](Canvas& c) { c.setOrigin(fromUpperLeft); });
}

void DrawingList::fillRectangle(const Rectangle& rectangle, Color color) {
    const Rectangle whole{-origin_.x, -origin_.y, width_ - origin_.x, height_ - origin_.y};
    if (rectangle == whole) {
        startOver();
    }
    calls_.emplace_back([=](Canvas& c) { c.fillRectangle(rectangle, color); });
}

void DrawingList::setPen(Color color, int32_t width) {
    penColor_ = color;
    penWidth_ = width;
    calls_.emplace_back([=](Canvas& c) { c.setPen(color, width); });
}

void DrawingList::drawLines(std::span<const Segment> segments) {
    calls_.emplace_back([kept = std::vector<Segment>(segments.begin(), segments.end())](Canvas& c) {
        c.drawLines(kept);
    });
}

void DrawingList::drawText(Point at, TextAnchor anchor, Color color, std::string_view text) {
    calls_.emplace_back(
        [=, kept = std::string(text)](Canvas& c) { c.drawText(at, anchor, color, kept); });
}

void DrawingList::roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) {
    calls_.emplace_back([=](Canvas& c) { c.roundRectangle(rectangle, corner, fill); });
}

void DrawingList::clip(const Rectangle& rectangle) {
    calls_.emplace_back([=](Canvas& c) { c.clip(rectangle); });
}

void DrawingList::endClip() {
    calls_.emplace_back([](Canvas& c) { c.endClip(); });
}

void DrawingList::copyImage(const Canvas& image) {
    const auto& list = dynamic_cast<const DrawingList&>(image);
    if (list.width_ >= width_ && list.height_ >= height_) {
        startOver();
    }
    calls_.emplace_back([calls = list.calls_](Canvas& c) {
        c.setOrigin({0, 0});
        for (const Call& call : calls) {
            call(c);
        }
    });
    setOrigin(origin_);
    setPen(penColor_, penWidth_);
}

void DrawingList::drawOn(Canvas& canvas) const {
    canvas.setOrigin({0, 0});
    for (const Call& call : calls_) {
        call(canvas);
    }
}

}  // namespace tonvane
