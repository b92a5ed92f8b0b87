#include "graph/RecordingCanvas.h"

#include <cstdio>
#include <utility>

namespace tonvane::tests {

namespace {

std::string text(const Rectangle& r) {
    return std::to_string(r.left) + "," + std::to_string(r.top) + ".." + std::to_string(r.right) +
           "," + std::to_string(r.bottom);
}

std::string text(Point p) {
    return std::to_string(p.x) + "," + std::to_string(p.y);
}

std::string hex(Color color) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%06X", color);
    return digits;
}

}  // namespace

void RecordingCanvas::add(const std::string& call) const {
    shared_->calls.push_back(std::to_string(number_) + " " + call);
}

std::vector<std::string> RecordingCanvas::take() {
    return std::exchange(shared_->calls, {});
}

std::unique_ptr<Canvas> RecordingCanvas::makeImage(int32_t width, int32_t height) const {
    auto image = std::make_unique<RecordingCanvas>();
    image->shared_ = shared_;
    image->number_ = ++shared_->images;
    image->add("image " + std::to_string(width) + "x" + std::to_string(height));
    return image;
}

void RecordingCanvas::setOrigin(Point fromUpperLeft) {
    add("origin " + text(fromUpperLeft));
}

void RecordingCanvas::fillRectangle(const Rectangle& rectangle, Color color) {
    add("fill " + text(rectangle) + " " + hex(color));
}

void RecordingCanvas::setPen(Color color, int32_t width) {
    add("pen " + hex(color) + " " + std::to_string(width));
}

void RecordingCanvas::drawLines(std::span<const Segment> segments) {
    shared_->lines.assign(segments.begin(), segments.end());
    add(segments.size() == 1 ? "line " + text(segments[0].from) + " " + text(segments[0].to)
                             : "lines");
}

void RecordingCanvas::drawText(Point at, TextAnchor anchor, Color color, std::string_view words) {
    const char* anchors[] = {"below", "left of", "right of"};
    add("text '" + std::string(words) + "' " + anchors[static_cast<int>(anchor)] + " " + text(at) +
        " " + hex(color));
}

void RecordingCanvas::roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) {
    add("round " + text(rectangle) + " " + std::to_string(corner) + " " + hex(fill));
}

void RecordingCanvas::clip(const Rectangle& rectangle) {
    add("clip " + text(rectangle));
}

void RecordingCanvas::endClip() {
    add("end clip");
}

void RecordingCanvas::copyImage(const Canvas& image) {
    add("copy " + std::to_string(dynamic_cast<const RecordingCanvas&>(image).number_));
}

}  // namespace tonvane::tests
