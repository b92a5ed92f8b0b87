// A canvas that keeps what is drawn on it as lines of text.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "graph/Canvas.h"

namespace tonvane::tests {

// All images of one device write to the device's list, each with its number in front: 0 for the
// device, then in the order in which they are made.
class RecordingCanvas : public Canvas {
  public:
    std::unique_ptr<Canvas> makeImage(int32_t width, int32_t height) const override {
        auto image = std::make_unique<RecordingCanvas>();
        image->shared_ = shared_;
        image->number_ = ++shared_->images;
        image->add("image " + std::to_string(width) + "x" + std::to_string(height));
        return image;
    }
    void setOrigin(Point fromUpperLeft) override { add("origin " + text(fromUpperLeft)); }
    void fillRectangle(const Rectangle& rectangle, Color color) override {
        add("fill " + text(rectangle) + " " + hex(color));
    }
    void setPen(Color color, int32_t width) override {
        add("pen " + hex(color) + " " + std::to_string(width));
    }
    void drawLines(std::span<const Segment> segments) override {
        shared_->lines.assign(segments.begin(), segments.end());
        add(segments.size() == 1 ? "line " + text(segments[0].from) + " " + text(segments[0].to)
                                 : "lines");
    }
    void drawText(Point at, TextAnchor anchor, Color color, std::string_view words) override {
        const char* anchors[] = {"below", "left of", "right of"};
        add("text '" + std::string(words) + "' " + anchors[static_cast<int>(anchor)] + " " +
            text(at) + " " + hex(color));
    }
    void roundRectangle(const Rectangle& rectangle, int32_t corner, Color fill) override {
        add("round " + text(rectangle) + " " + std::to_string(corner) + " " + hex(fill));
    }
    void clip(const Rectangle& rectangle) override { add("clip " + text(rectangle)); }
    void endClip() override { add("end clip"); }
    void copyImage(const Canvas& image) override {
        add("copy " + std::to_string(dynamic_cast<const RecordingCanvas&>(image).number_));
    }

    // What was drawn since the last call.
    std::vector<std::string> take() { return std::exchange(shared_->calls, {}); }

    // The segments of the last drawLines.
    [[nodiscard]] const std::vector<Segment>& lastLines() const { return shared_->lines; }

  private:
    static std::string text(Point p) { return std::to_string(p.x) + "," + std::to_string(p.y); }
    static std::string text(const Rectangle& r) {
        return text(Point{r.left, r.top}) + ".." + text(Point{r.right, r.bottom});
    }
    static std::string hex(Color color) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%06X", color);
        return digits;
    }
    void add(const std::string& call) const {
        shared_->calls.push_back(std::to_string(number_) + " " + call);
    }

    struct Shared {
        std::vector<std::string> calls;
        std::vector<Segment> lines;
        int images = 0;
    };
    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
    int number_ = 0;
};

}  // namespace tonvane::tests
